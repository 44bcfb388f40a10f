#include "Host/ObservedHTTPClient.h"

#include "Tests/Support/FakeHTTPClient.h"

#include <future>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

using OrvaneHost::ObservedHTTPClient;
using Qx::HTTPRequest;
using Qx::HTTPResponse;
using namespace std::chrono_literals;

// Keeps what it is given, or throws.
class FussyClient : public FakeHTTPClient {
public:
    void queueRequest(HTTPRequest& request) override {
        if (request.getURL().empty())
            throw std::runtime_error("no");
        FakeHTTPClient::queueRequest(request);
    }
};

class ObservedHTTPClientTest : public testing::Test {
protected:
    HTTPRequest request{BOOST_CURRENT_LOCATION};
    FussyClient* inner = new FussyClient;
    std::unique_ptr<ObservedHTTPClient> observed =
        std::make_unique<ObservedHTTPClient>(std::unique_ptr<Qx::IHTTPClient>(inner));
};

TEST_F(ObservedHTTPClientTest, WaitsForNothingThatWasNotSent) {
    EXPECT_THROW(observed->queueRequest(request), std::runtime_error);
    EXPECT_TRUE(observed->waitForResponses().empty());
}

TEST_F(ObservedHTTPClientTest, HandsOverWhatCompletionsThrewAtOnceAndNoMore) {
    request.setURL("u");
    request.setCallback([](const HTTPResponse&) { throw std::runtime_error("no"); });
    observed->queueRequest(request);
    EXPECT_THROW(inner->answer(404, ""), std::runtime_error);
    EXPECT_EQ(observed->waitForResponses().at(0).getStatus(), 404);
    EXPECT_TRUE(observed->waitForResponses().empty()) << "it keeps none for good";
}

TEST_F(ObservedHTTPClientTest, WaitsForAnEmptyBatchToo) {
    std::vector<HTTPRequest> none;
    observed->whenAllRequests(none, nullptr, HTTPRequest::ExecutionType::CLIENT_THREAD);
    auto waiting = std::async(std::launch::async, [&] { return observed->waitForResponses(); });
    EXPECT_EQ(waiting.wait_for(50ms), std::future_status::timeout);
    inner->batchCallback({});
    EXPECT_TRUE(waiting.get().empty());
}

TEST_F(ObservedHTTPClientTest, MayEndInACompletion) {
    request.setURL("u");
    request.setCallback([this](const HTTPResponse&) { observed.reset(); });
    observed->queueRequest(request);
    const HTTPRequest::Callback completion = inner->queued.front().getCallback();
    completion(HTTPResponse(200, "{}"));
    EXPECT_FALSE(observed);
}

} // namespace

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

// Keeps what it is given, but throws without an address, and answers what is left when it ends.
class FussyClient : public FakeHTTPClient {
public:
    ~FussyClient() override {
        for (std::size_t index = 0; index < queued.size(); ++index)
            HTTPRequest(queued[index]).getCallback()(HTTPResponse());
    }

    void queueRequest(HTTPRequest& request) override {
        if (request.getURL().empty())
            throw std::runtime_error("no");
        if (request.getURL() == "at once")
            request.getCallback()(HTTPResponse(404, ""));
        else
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
    request.setURL("at once");
    request.setCallback([](const HTTPResponse&) { throw std::runtime_error("no"); });
    EXPECT_THROW(observed->queueRequest(request), std::runtime_error);
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

TEST_F(ObservedHTTPClientTest, TakesWhatIsQueuedWhileItEnds) {
    int completions = 0;
    request.setURL("u");
    request.setCallback([&, &client = *observed](const HTTPResponse&) {
        if (++completions < 100)
            client.queueRequest(request);
    });
    observed->queueRequest(request);
    observed.reset();
    EXPECT_EQ(completions, 100);
}

TEST_F(ObservedHTTPClientTest, MayEndInACompletion) {
    request.setURL("u");
    request.setCallback([this](const HTTPResponse&) { observed.reset(); });
    observed->queueRequest(request);
    const HTTPRequest::Callback completion = inner->queued.front().getCallback();
    inner->queued.clear();
    completion(HTTPResponse(200, "{}"));
    EXPECT_FALSE(observed);
}

} // namespace

#include "Host/ObservedHTTPClient.h"

#include "Testing/PreparedHTTPClient.h"

#include <future>
#include <gtest/gtest.h>
#include <stdexcept>
#include <utility>

namespace {

using Orvane::Testing::PreparedHTTPClient;
using OrvaneHost::ObservedHTTPClient;
using Qx::HTTPRequest;
using Qx::HTTPResponse;
using namespace std::chrono_literals;

// Throws without a URL, and answers what is left when it ends.
class FussyClient : public PreparedHTTPClient {
public:
    FussyClient() { hold(); }
    ~FussyClient() override { answerAll(); }

    void queueRequest(HTTPRequest& request) override {
        if (request.getURL().empty())
            throw std::runtime_error("no");
        PreparedHTTPClient::queueRequest(request);
    }

    void whenAllRequests(std::vector<HTTPRequest>&, BatchCallback callback, HTTPRequest::ExecutionType) override {
        batchCallback = std::move(callback);
    }

    BatchCallback batchCallback;
};

class ObservedHTTPClientTest : public testing::Test {
protected:
    HTTPRequest request{BOOST_CURRENT_LOCATION};
    FussyClient* inner = new FussyClient;
    std::unique_ptr<ObservedHTTPClient> observed =
        std::make_unique<ObservedHTTPClient>(std::unique_ptr<Qx::IHTTPClient>(inner));
};

TEST_F(ObservedHTTPClientTest, WaitsForAnEmptyBatchButForNothingThatWasNotSent) {
    EXPECT_THROW(observed->queueRequest(request), std::runtime_error);
    EXPECT_TRUE(observed->waitForResponses().empty());
    std::vector<HTTPRequest> none;
    observed->whenAllRequests(none, nullptr, HTTPRequest::ExecutionType::CLIENT_THREAD);
    auto waiting = std::async(std::launch::async, [&] { return observed->waitForResponses(); });
    EXPECT_EQ(waiting.wait_for(50ms), std::future_status::timeout);
    inner->batchCallback({});
    EXPECT_TRUE(waiting.get().empty());
}

TEST_F(ObservedHTTPClientTest, HandsOverWhatCompletionsThrewAtOnceAndNoMore) {
    ObservedHTTPClient client(std::make_unique<PreparedHTTPClient>(HTTPResponse(404, "")));
    request.setCallback([](const HTTPResponse&) { throw std::runtime_error("no"); });
    EXPECT_THROW(client.queueRequest(request), std::runtime_error);
    EXPECT_EQ(client.waitForResponses().at(0).getStatus(), 404);
    EXPECT_TRUE(client.waitForResponses().empty()) << "it keeps none for good";
}

TEST_F(ObservedHTTPClientTest, TakesWhatIsQueuedWhileItEndsAndEndsInACompletion) {
    int completions = 0;
    request.setURL("u");
    request.setCallback([&, &client = *observed](const HTTPResponse&) {
        if (++completions < 100)
            client.queueRequest(request);
    });
    observed->queueRequest(request);
    observed.reset();
    EXPECT_EQ(completions, 100);
    inner = new FussyClient;
    observed = std::make_unique<ObservedHTTPClient>(std::unique_ptr<Qx::IHTTPClient>(inner));
    request.setCallback([this](const HTTPResponse&) { observed.reset(); });
    observed->queueRequest(request);
    inner->answer(0, HTTPResponse(200, "{}"));
    EXPECT_FALSE(observed);
}

} // namespace

#include "Host/ObservedHTTPClient.h"

#include "Testing/PreparedHTTPClient.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

namespace {

using Orvane::Testing::PreparedHTTPClient;
using OrvaneHost::ObservedHTTPClient;
using Qx::HTTPRequest;
using Qx::HTTPResponse;

TEST(ObservedHTTPClient, WaitsForEachCallbackAndForNothingThatNeverComes) {
    const auto inner = std::make_shared<PreparedHTTPClient>(HTTPResponse(404, ""));
    ObservedHTTPClient client(inner);
    HTTPRequest request(BOOST_CURRENT_LOCATION);
    request.setCallback([](const HTTPResponse&) { throw std::runtime_error("no"); });
    EXPECT_THROW(client.queueRequest(request), std::runtime_error);
    EXPECT_EQ(client.waitForResponses().at(0).getStatus(), 404);
    EXPECT_TRUE(client.waitForResponses().empty()) << "it keeps none for good";

    inner->hold();
    bool hasReturned = false;
    request.setCallback([&](const HTTPResponse&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        hasReturned = true;
    });
    std::vector<HTTPRequest> batch(2, request);
    client.whenAllRequests(batch, nullptr, HTTPRequest::ExecutionType::CLIENT_THREAD);
    std::thread answering([&] {
        inner->answer(1);
        inner->clear();
    });
    const std::vector<HTTPResponse> responses = client.waitForResponses();
    EXPECT_TRUE(hasReturned);
    EXPECT_EQ(responses.at(1).getStatus(), 404);
    EXPECT_FALSE(responses.at(0).getReason().empty()) << "the client has dropped it";
    answering.join();
}

} // namespace

// What the client does when there is no memory, in the calling thread or in its own.

#include "Tests/Host/HTTPClient/Sending.h"
#include "Tests/Support/FailingAllocation.h"
#include "Tests/Support/Faults.h"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>

namespace {

using OrvaneHost::CurlHTTPClient;
using Qx::HTTPRequest;
using Qx::HTTPResponse;
using Type = HTTPRequest::ExecutionType;
using namespace std::chrono_literals;

TEST(CurlHTTPClientWithoutMemory, IsNotMade) {
    const auto made = settings();
    const auto expectException = [](bool hasThrown) { EXPECT_TRUE(hasThrown); };
    EXPECT_GT(failEachAllocation([&] { CurlHTTPClient client(made); }, expectException), 5U);
}

class CurlHTTPClientWithoutMemoryInBothTypes : public testing::TestWithParam<Type> {};
INSTANTIATE_TEST_SUITE_P(In, CurlHTTPClientWithoutMemoryInBothTypes,
                         testing::Values(Type::CALLING_THREAD, Type::CLIENT_THREAD), [](const auto& tested) {
                             return tested.param == Type::CALLING_THREAD ? "CallingThread" : "ClientThread";
                         });

// A batch that can't be sent whole is not sent at all, and the caller hears of it.
TEST_P(CurlHTTPClientWithoutMemoryInBothTypes, SendsABatchWholeOrNotAtAll) {
    const RawServer server(Faults::serving({}));
    CurlHTTPClient client(settings());
    for (auto [number, hasFailed] = std::pair<std::size_t, bool>(0, true); hasFailed; ++number) {
        std::atomic<int> completions = 0;
        std::atomic<int> batches = 0;
        std::vector<HTTPRequest> batch(3,
                                       makeRequest(server.url("/"), GetParam(), [&](const auto&) { ++completions; }));
        batch[1].setURL("refused");
        const WithoutMemory ended = runWithoutMemory(number, [&] {
            client.whenAllRequests(
                batch, [&](const std::vector<HTTPResponse>& responses) { batches += responses.size() == 3 ? 1 : 0; },
                GetParam());
        });
        hasFailed = ended.hasFailed;
        for (int i = 0; i < 2000 && !ended.hasThrown && batches == 0; ++i)
            std::this_thread::sleep_for(1ms);
        EXPECT_EQ(completions, ended.hasThrown ? 0 : 3) << number;
        EXPECT_EQ(batches, ended.hasThrown ? 0 : 1) << number;
    }
}

// On the client's own thread there is nobody to tell but the completion.
TEST_P(CurlHTTPClientWithoutMemoryInBothTypes, AnswersOnceWhateverItsThreadLacks) {
    const RawServer server(Faults::serving({}));
    CurlHTTPClient client(settings());
    std::size_t failures = 0;
    for (auto [number, hasFailed] = std::pair<std::size_t, bool>(0, true); hasFailed; ++number) {
        std::atomic<int> completions = 0;
        std::atomic<bool> isSuccessful = false;
        HTTPRequest request = makeRequest(server.url("/"), GetParam(), [&](const HTTPResponse& response) {
            isSuccessful = response.isSuccessful();
            ++completions;
        });
        const FailingAllocation failing(number, "orvane-transfer");
        client.queueRequest(request);
        for (int i = 0; i < 2000 && completions == 0; ++i)
            std::this_thread::sleep_for(1ms);
        hasFailed = failing.hasFailed();
        failures += isSuccessful ? 0 : 1;
        EXPECT_EQ(completions, 1) << number;
    }
    EXPECT_GT(failures, 1U);
    EXPECT_TRUE(send(client, server.url("/")).isSuccessful());
}

} // namespace

// What the HTTP client and the host's layer over it do when there is no memory, in the calling thread or in their own.

#include "Host/ObservedHTTPClient.h"
#include "Tests/Support/FakeHTTPClient.h"
#include "Tests/Support/RawServer.h"
#include "Tests/Support/Sending.h"
#include "Tests/Support/WithoutMemory.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <curl/curl.h>
#include <malloc.h>

namespace {

using OrvaneHost::CurlHTTPClient;
using Qx::HTTPRequest;
using Qx::HTTPResponse;
using Type = HTTPRequest::ExecutionType;
using namespace std::chrono_literals;

// libcurl's allocations fail like all others.
void* resize(void* memory, std::size_t size) {
    void* resized = ::operator new(size, std::nothrow);
    if (resized && memory)
        std::memcpy(resized, memory, std::min(size, malloc_usable_size(memory)));
    if (resized)
        ::operator delete(memory);
    return resized;
}
const CURLcode initialised = curl_global_init_mem(
    CURL_GLOBAL_DEFAULT, [](std::size_t size) { return ::operator new(size, std::nothrow); },
    [](void* memory) { ::operator delete(memory); }, resize,
    [](const char* text) {
        const std::size_t size = std::strlen(text) + 1;
        void* copy = ::operator new(size, std::nothrow);
        return static_cast<char*>(copy ? std::memcpy(copy, text, size) : nullptr);
    },
    [](std::size_t count, std::size_t size) {
        void* memory = ::operator new(count* size, std::nothrow);
        return memory ? std::memset(memory, 0, count * size) : nullptr;
    });

TEST(CurlHTTPClientWithoutMemory, IsNotMade) {
    ASSERT_EQ(initialised, CURLE_OK);
    const auto made = settings();
    EXPECT_GT(expectThrownEachTime([&] { CurlHTTPClient client(made); }), 5U);
}

class CurlHTTPClientWithoutMemoryInBothTypes : public testing::TestWithParam<Type> {};
INSTANTIATE_TEST_SUITE_P(In, CurlHTTPClientWithoutMemoryInBothTypes,
                         testing::Values(Type::CALLING_THREAD, Type::CLIENT_THREAD), [](const auto& tested) {
                             return tested.param == Type::CALLING_THREAD ? "CallingThread" : "ClientThread";
                         });

// A batch that can't be sent whole is not sent at all, and the caller hears of it. On the client's own thread there is
// nobody to tell but the completions.
TEST_P(CurlHTTPClientWithoutMemoryInBothTypes, SendsABatchWholeOrNotAtAllAndAnswersOnce) {
    for (const char* failingThread : {static_cast<const char*>(nullptr), "orvane-transfer"}) {
        const RawServer server(Serving::well);
        const RawServer next(Serving::well);
        std::size_t number = 0;
        std::ptrdiff_t sent = 0;
        for (bool hasFailed = true; hasFailed; ++number) {
            std::atomic<int> completions = 0;
            std::atomic<int> batches = 0;
            std::vector<HTTPRequest> batch(
                3, makeRequest(server.url("/"), GetParam(), [&](const auto&) { ++completions; }));
            batch[1].setURL("refused");
            bool isSent = false;
            {
                CurlHTTPClient client(settings());
                Allocations allocations;
                allocations.fail(number, failingThread);
                try {
                    client.whenAllRequests(
                        batch, [&](const auto&) { ++batches; }, GetParam());
                    isSent = true;
                } catch (const std::bad_alloc&) {
                }
                while (batches < (isSent ? 1 : 0))
                    std::this_thread::sleep_for(1ms);
                hasFailed = allocations.stopFailing();
                HTTPRequest withoutToken = makeRequest(next.url("/"), Type::CALLING_THREAD);
                withoutToken.setAuthType(HTTPRequest::AuthType::NONE);
                EXPECT_EQ(send(client, withoutToken).getStatus(), 200) << number;
            }
            sent += isSent ? 1 : 0;
            EXPECT_EQ(completions, isSent ? 3 : 0) << number;
            EXPECT_EQ(batches, isSent ? 1 : 0) << number;
            EXPECT_TRUE(isSent || !failingThread) << number;
        }
        EXPECT_GT(number, 20U);
        const std::string received = server.received();
        EXPECT_TRUE(failingThread || std::count(received.begin(), received.end(), 'G') == 2 * sent) << received;
        EXPECT_EQ(next.received().find("Authorization"), std::string::npos) << "that of the request before";
    }
}

TEST(ObservedHTTPClientWithoutMemory, TellsOfEachRequestAllTheSame) {
    const HTTPResponse failure =
        HTTPResponse::transportFailure(HTTPResponse::FailureKind::NETWORK, std::string(100, 'x'));
    int kept = 0;
    const std::size_t failures = failEachAllocation([&](auto run) {
        const WithoutMemory ended = run([&] {
            OrvaneHost::ObservedHTTPClient client(std::make_unique<FakeHTTPClient>(failure));
            bool isCompleted = false;
            HTTPRequest request(BOOST_CURRENT_LOCATION);
            request.setCallback([&](const HTTPResponse&) { isCompleted = true; });
            client.queueRequest(request);
            EXPECT_TRUE(isCompleted);
            EXPECT_EQ(client.waitForResponses().at(0).getStatus(), 0);
        });
        kept += ended.hasFailed && !ended.hasThrown ? 1 : 0;
    });
    EXPECT_GT(failures, 5U);
    EXPECT_EQ(kept, 1) << "without memory for its reason a response is kept as one without memory";
}

} // namespace

// What the client does when there is no memory, in the calling thread or in its own.

#include "Tests/Host/HTTPClient/Sending.h"
#include "Tests/Support/FailingAllocation.h"
#include "Tests/Support/Faults.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <curl/curl.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <new>
#include <thread>

namespace {

using OrvaneHost::CurlHTTPClient;
using Qx::HTTPRequest;
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
    std::atomic<int> completions = 0;
    std::atomic<int> batches = 0;
    int sent = 0;
    {
        CurlHTTPClient client(settings());
        for (auto [number, hasFailed] = std::pair<std::size_t, bool>(0, true); hasFailed; ++number) {
            std::vector<HTTPRequest> batch(
                3, makeRequest(server.url("/"), GetParam(), [&](const auto&) { ++completions; }));
            batch[1].setURL("refused");
            const WithoutMemory ended = runWithoutMemory(number, [&] {
                client.whenAllRequests(
                    batch, [&](const auto&) { ++batches; }, GetParam());
            });
            hasFailed = ended.hasFailed;
            sent += ended.hasThrown ? 0 : 1;
            while (batches < sent)
                std::this_thread::sleep_for(1ms);
        }
    }
    EXPECT_GT(sent, 0);
    EXPECT_EQ(completions, 3 * sent);
    EXPECT_EQ(batches, sent);
    const std::string received = server.received();
    EXPECT_EQ(std::count(received.begin(), received.end(), 'G'), 2 * sent) << received;
}

// On the client's own thread there is nobody to tell but the completion.
TEST_P(CurlHTTPClientWithoutMemoryInBothTypes, AnswersOnceWhateverItsThreadLacks) {
    const RawServer server(Faults::serving({}));
    std::size_t number = 0;
    for (bool hasFailed = true; hasFailed; ++number) {
        std::atomic<int> completions = 0;
        HTTPRequest request = makeRequest(server.url("/"), GetParam(), [&](const auto&) { ++completions; });
        {
            CurlHTTPClient client(settings());
            const FailingAllocation failing(number, "orvane-transfer");
            client.queueRequest(request);
            while (completions == 0)
                std::this_thread::sleep_for(1ms);
            hasFailed = failing.hasFailed();
            HTTPRequest next = makeRequest(server.url("/next"), Type::CALLING_THREAD);
            next.setAuthType(HTTPRequest::AuthType::NONE);
            send(client, next);
        }
        EXPECT_EQ(completions, 1) << number;
    }
    EXPECT_GT(number, 20U);
    const std::string received = server.received();
    for (std::size_t next = received.find("GET /next"); next != std::string::npos;) {
        const std::size_t end = received.find("\r\n\r\n", next);
        EXPECT_EQ(received.substr(next, end - next).find("Authorization"), std::string::npos)
            << "that of the one before";
        next = received.find("GET /next", end);
    }
}

} // namespace

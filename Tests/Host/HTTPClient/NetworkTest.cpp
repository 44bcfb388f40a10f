// What servers and networks do to a client, in both ways to ask it.

#include "Tests/Support/Network.h"
#include "Tests/Support/FailingCalls.h"
#include "Tests/Support/ProcessMemory.h"
#include "Tests/Support/Sending.h"

#include <atomic>
#include <gtest/gtest.h>
#include <locale>

namespace {

using OrvaneHost::CurlHTTPClient;
using Qx::HTTPRequest;
using Qx::HTTPResponse;
using Type = HTTPRequest::ExecutionType;

// A host's locale in which "i" and "I" are not the same letter, as in Turkish.
class ScopedTurkishLetters {
public:
    ScopedTurkishLetters(const ScopedTurkishLetters&) = delete;
    ScopedTurkishLetters& operator=(const ScopedTurkishLetters&) = delete;
    ScopedTurkishLetters() : before_(std::locale::global(std::locale(std::locale(), new Letters))) {}
    ~ScopedTurkishLetters() { std::locale::global(before_); }

private:
    struct Letters : std::ctype<char> {
        char do_toupper(char letter) const override { return letter == 'i' ? letter : ctype::do_toupper(letter); }
        char do_tolower(char letter) const override { return letter == 'I' ? letter : ctype::do_tolower(letter); }
    };

    const std::locale before_;
};

class NetworkTest : public testing::TestWithParam<std::size_t> {};
INSTANTIATE_TEST_SUITE_P(Of, NetworkTest, testing::Range<std::size_t>(0, Network::circumstances().size()),
                         [](const auto& tested) { return Network::circumstances()[tested.param].name(); });

// Sends the request that meets the circumstance, and another; the completions are counted for as long as there are any.
void meet(const Circumstance& circumstance, Type type, std::atomic<int>& completions) {
    const RawServer good(Serving::well);
    const RawServer server = circumstance.serve();
    std::promise<HTTPResponse> answered;
    HTTPRequest request = makeRequest(server.url("/"), type, [&](const HTTPResponse& response) {
        if (++completions == 1)
            answered.set_value(response);
    });
    OrvaneHost::CurlHTTPClientSettings changed = impatient();
    circumstance.change(request, changed);
    const auto proxy = circumstance.useProxy(server);
    const PeakMemory memory;
    CurlHTTPClient client(changed);
    const auto start = std::chrono::steady_clock::now();
    client.queueRequest(request);
    const HTTPResponse response = answered.get_future().get();
    EXPECT_LT(std::chrono::steady_clock::now() - start, circumstance.limit());
    circumstance.expect(response);
    EXPECT_EQ(response.getReason().starts_with("refused:"), circumstance.isRefused());
    circumstance.expectReceived(server.received());
    EXPECT_LT(memory.growth(), changed.maxBodyBytes + (std::size_t{64} << 20));
    HTTPRequest next = makeRequest(good.url("/"), Type::CALLING_THREAD);
    next.setAuthType(HTTPRequest::AuthType::NONE);
    EXPECT_EQ(send(client, next).getBody(), "{}") << "the client is as good as before";
    EXPECT_EQ(good.received().find("uthorization"), std::string::npos) << "that of the request before";
}

TEST_P(NetworkTest, EndsOnceAsItMustAndLeavesNothing) {
    const ScopedTurkishLetters letters;
    const auto descriptors = countEntries("/proc/self/fd");
    const auto threads = countThreads();
    for (const Type type : {Type::CALLING_THREAD, Type::CLIENT_THREAD}) {
        std::atomic<int> completions = 0;
        meet(Network::circumstances()[GetParam()], type, completions);
        EXPECT_EQ(completions, 1) << static_cast<int>(type);
    }
    expectNoMoreEntries("/proc/self/fd", descriptors);
    expectNoMoreEntries("/proc/self/task", threads);
}

} // namespace

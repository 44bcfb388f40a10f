// What the client does for its caller; what networks do to it is in NetworkTest.cpp.

#include "Tests/Support/FailingCalls.h"
#include "Tests/Support/Network.h"
#include "Tests/Support/Sending.h"

#include <arpa/inet.h>
#include <array>
#include <atomic>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace {

using OrvaneHost::CurlHTTPClient;
using OrvaneHost::CurlHTTPClientSettings;
using Qx::HTTPRequest;
using Qx::HTTPResponse;
using Type = HTTPRequest::ExecutionType;
using namespace std::chrono_literals;

// A response of the request's path.
std::string echoPath(const std::string& request) {
    const std::size_t start = request.find('/');
    return Serving::ok(request.substr(start, request.find(' ', start) - start));
}

class CurlHTTPClientInBothTypes : public testing::TestWithParam<Type> {
protected:
    HTTPRequest make(const std::string& url, const HTTPRequest::Callback& callback = nullptr) const {
        return makeRequest(url, GetParam(), callback);
    }
};
INSTANTIATE_TEST_SUITE_P(In, CurlHTTPClientInBothTypes, testing::Values(Type::CALLING_THREAD, Type::CLIENT_THREAD),
                         [](const auto& type) { return type.index == 0 ? "CallingThread" : "ClientThread"; });

TEST_P(CurlHTTPClientInBothTypes, AnswersInTheThreadThatIsAskedFor) {
    const RawServer server(Serving::well);
    CurlHTTPClient client(settings());
    std::promise<std::thread::id> answeredBy;
    std::array<char, 16> name{};
    HTTPRequest request = make(server.url("/"), [&](const HTTPResponse&) {
        pthread_getname_np(pthread_self(), name.data(), name.size());
        answeredBy.set_value(std::this_thread::get_id());
    });
    client.queueRequest(request);
    const bool isHere = answeredBy.get_future().get() == std::this_thread::get_id();
    EXPECT_EQ(isHere, GetParam() == Type::CALLING_THREAD);
    EXPECT_EQ(std::string(name.data()) == "a-thread-name-l", !isHere) << name.data();
}

TEST_P(CurlHTTPClientInBothTypes, BatchIsAnsweredOnceAfterItsRequestsAndLeavesNothing) {
    const auto descriptors = countEntries("/proc/self/fd");
    const auto threads = countThreads();
    std::atomic<int> completions = 0;
    {
        const RawServer server(Serving::with(echoPath));
        CurlHTTPClientSettings few = settings();
        few.maxConnections = 3;
        CurlHTTPClient client(few);
        std::vector<HTTPRequest> requests(1000, make("bad\n", [&](const HTTPResponse&) { ++completions; }));
        for (std::size_t i = 0; i < requests.size(); ++i)
            if (i != 7)
                requests[i].setURL(server.url("/" + std::to_string(i)));
        const std::vector<HTTPResponse> responses = sendAll(client, requests, GetParam());
        EXPECT_EQ(completions, 1000);
        EXPECT_LE(server.mostConnections(), 3U);
        for (std::size_t i = 0; i < responses.size(); ++i)
            EXPECT_EQ(responses[i].getBody(), i == 7 ? "" : "/" + std::to_string(i)) << "in the order of the requests";
        EXPECT_TRUE(sendAll(client, {}, GetParam()).empty()) << "an empty batch is answered too";
    }
    EXPECT_EQ(completions, 1000);
    expectNoMoreEntries("/proc/self/fd", descriptors);
    expectNoMoreEntries("/proc/self/task", threads);
}

TEST_P(CurlHTTPClientInBothTypes, BatchThatThrowsStillRunsAllItsCompletions) {
    const RawServer server(Serving::well);
    CurlHTTPClient client(settings());
    std::atomic<int> completions = 0;
    std::promise<void> answered;
    std::vector<HTTPRequest> requests(3, make(server.url("/"), [&](const HTTPResponse&) {
                                          ++completions;
                                          throw std::runtime_error("no");
                                      }));
    const auto sendBatch = [&] {
        client.whenAllRequests(
            requests, [&](const std::vector<HTTPResponse>&) { answered.set_value(); }, GetParam());
    };
    if (GetParam() == Type::CALLING_THREAD) {
        EXPECT_THROW(sendBatch(), std::runtime_error);
    } else {
        EXPECT_NO_THROW(sendBatch());
    }
    answered.get_future().wait();
    EXPECT_EQ(completions, 3);
}

TEST_P(CurlHTTPClientInBothTypes, RefusesAtOnceWhateverElseWaits) {
    const RawServer silent(Serving::silently);
    CurlHTTPClientSettings one = settings();
    one.maxConnections = 1;
    CurlHTTPClient client(one);
    HTTPRequest stalled = makeRequest(silent.url("/"), Type::CLIENT_THREAD);
    client.queueRequest(stalled);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(send(client, make("ftp://127.0.0.1/")).getFailureKind(), HTTPResponse::FailureKind::NOT_ALLOWED);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
}

TEST_P(CurlHTTPClientInBothTypes, CompletionsMayQueueAChainAndABatch) {
    const RawServer server(Serving::well);
    CurlHTTPClient client(settings());
    std::atomic<int> answers = 0;
    std::promise<std::size_t> ended;
    const HTTPRequest::Callback next = [&](const HTTPResponse&) {
        if (++answers < 200) {
            HTTPRequest request = make(server.url("/"), next);
            client.queueRequest(request);
            return;
        }
        std::vector<HTTPRequest> batch(10, make(server.url("/")));
        client.whenAllRequests(
            batch, [&](const std::vector<HTTPResponse>& responses) { ended.set_value(responses.size()); }, GetParam());
    };
    next(HTTPResponse());
    EXPECT_EQ(ended.get_future().get(), 10U);
}

// A callback may own the last reference to the client, which then ends where the callback is destroyed.
TEST(CurlHTTPClient, MayBeOwnedByItsCallbacks) {
    const RawServer server(Serving::well);
    const auto threads = countThreads();
    for (int i = 0; i < 50; ++i) {
        const auto client = std::make_shared<CurlHTTPClient>(settings());
        HTTPRequest request = makeRequest(server.url("/"), Type::CLIENT_THREAD, [client](const HTTPResponse&) {});
        client->queueRequest(request);
    }
    expectNoMoreEntries("/proc/self/task", threads);
}

// The thread that runs the first completion has to run those that wait for it too.
TEST_P(CurlHTTPClientInBothTypes, MayEndInACompletionWithOthersWaitingForTheThread) {
    const RawServer server(Serving::well);
    CurlHTTPClientSettings single = settings();
    single.deliveryThreads = 1;
    for (const auto pause : {0ms, 20ms}) { // Without one the call that sends may not even have returned.
        auto client = std::make_unique<CurlHTTPClient>(single);
        std::atomic<int> completions = 0;
        std::promise<void> ended;
        std::vector<HTTPRequest> batch(4, make(server.url("/"), [&](const HTTPResponse&) {
                                           std::this_thread::sleep_for(pause);
                                           client.reset();
                                           if (++completions == 4)
                                               ended.set_value();
                                       }));
        client->whenAllRequests(batch, nullptr, GetParam());
        ended.get_future().wait();
        EXPECT_EQ(completions, 4);
    }
}

TEST(CurlHTTPClient, AnswersEachRequestInFlightOnceWhenItIsDestroyed) {
    const RawServer server(Serving::silently);
    std::atomic<int> failures = 0;
    const auto count = [&](const HTTPResponse& response) { failures += response.getReason().empty() ? 0 : 1; };
    const auto start = std::chrono::steady_clock::now();
    {
        CurlHTTPClient client(settings());
        HTTPRequest request = makeRequest(server.url("/"), Type::CLIENT_THREAD, [&](const HTTPResponse& response) {
            count(response);
            HTTPRequest late = makeRequest(server.url("/"), Type::CLIENT_THREAD, count);
            client.queueRequest(late);
        });
        for (int i = 0; i < 100; ++i)
            client.queueRequest(request);
        std::this_thread::sleep_for(50ms);
    }
    EXPECT_EQ(failures, 200);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 2s);
}

TEST(CurlHTTPClient, AWaitThatFailsTakesNoTimeAndEnds) {
    const RawServer silent(Serving::silently);
    const RawServer good(Serving::well);
    CurlHTTPClient client(settings());
    auto answer = std::async(std::launch::async, [&] { return send(client, silent.url("/")); });
    while (silent.received().empty())
        std::this_thread::sleep_for(1ms);
    FailingCalls::poll = true;
    const std::clock_t start = std::clock();
    const HTTPResponse response = answer.get();
    EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC / 2);
    FailingCalls::poll = false;
    EXPECT_NE(response.getReason().find("does not let the client wait"), std::string::npos) << response.getReason();
    EXPECT_EQ(send(client, good.url("/")).getBody(), "{}");
}

TEST(CurlHTTPClient, IsNotMadeWithSettingsThatMakeNoSenseNorWithoutDescriptors) {
    for (const auto& spoil : std::initializer_list<void (*)(CurlHTTPClientSettings&)>{
             [](auto& made) { made.connectTimeout = -1ms; }, [](auto& made) { made.requestTimeout = 0ms; },
             [](auto& made) { made.requestTimeout = 25h; }, [](auto& made) { made.stallTimeout = -1s; },
             [](auto& made) { made.deliveryThreads = SIZE_MAX; },
             [](auto& made) { made.tokenOrigins = {"service.example"}; }}) {
        CurlHTTPClientSettings spoilt = settings();
        spoil(spoilt);
        EXPECT_THROW(CurlHTTPClient client(spoilt), std::invalid_argument);
    }
    FailingCalls::socketpair = true;
    EXPECT_THROW(CurlHTTPClient client(settings()), std::system_error);
    FailingCalls::socketpair = false;
}

TEST(CurlHTTPClient, AsksForACertificateOnceInAConnectionAndItsSession) {
    std::atomic<int> connections = 0;
    const auto tell = [&](RawServer::Connection& connection) {
        const std::string who = std::to_string(++connections) + (connection.isResumed() ? " resumed" : " new");
        for (int left = 2; left > 0 && !connection.readRequest().empty(); --left)
            connection.send(Serving::ok(who));
    };
    const RawServer server(tell, Network::identityOf("good"));
    CurlHTTPClientSettings trusting = settings();
    trusting.certificateFile = Network::trustedBy("authority");
    CurlHTTPClient client(trusting);
    for (const char* who : {"1 new", "1 new", "2 resumed", "2 resumed"})
        EXPECT_EQ(send(client, server.url("/")).getBody(), who);
}

TEST(CurlHTTPClient, LeavesSignalsToTheHost) {
    CurlHTTPClient client(settings());
    const RawServer server(Serving::well);
    HTTPRequest request = makeRequest(server.url("/"), Type::CLIENT_THREAD);
    request.setThreadName("orvane-caller");
    EXPECT_EQ(send(client, request).getStatus(), 200);
    int threads = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ostringstream status;
        status << std::ifstream(task.path() / "status").rdbuf();
        const std::string text = status.str();
        if (text.find("Name:\torvane-") == std::string::npos)
            continue;
        ++threads;
        const std::uint64_t blocked = std::stoull(text.substr(text.find("SigBlk:") + 7), nullptr, 16);
        for (const int signal : {SIGINT, SIGTERM, SIGCHLD, SIGPIPE})
            EXPECT_EQ(blocked >> (signal - 1) & 1, 1U) << text;
        EXPECT_EQ(blocked >> (SIGSEGV - 1) & 1, 0U) << "a fault of its own is not another's";
    }
    sigset_t own;
    pthread_sigmask(SIG_BLOCK, nullptr, &own);
    EXPECT_EQ(sigismember(&own, SIGTERM), 0) << "the calling thread is as before";
    EXPECT_GE(threads, 2) << "the one that transfers, and one that has called a completion";
}

TEST(CurlHTTPClient, LeavesItsConnectionsToNoOtherProgram) {
    const RawServer server(Serving::well);
    CurlHTTPClient client(settings());
    EXPECT_EQ(send(client, server.url("/")).getStatus(), 200);
    int connections = 0;
    for (int descriptor = 0; descriptor < 256; ++descriptor) {
        sockaddr_in peer{};
        socklen_t length = sizeof peer;
        if (getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &length) != 0 || peer.sin_family != AF_INET ||
            server.port() != ntohs(peer.sin_port))
            continue;
        ++connections;
        EXPECT_EQ(fcntl(descriptor, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
    }
    EXPECT_EQ(connections, 1);
}

TEST(CurlHTTPClient, InAForkedChildFailsInWordsAndIsLeftToTheParent) {
    const RawServer server(Serving::well);
    auto client = std::make_unique<CurlHTTPClient>(settings());
    EXPECT_EQ(send(*client, server.url("/")).getStatus(), 200);
    const auto sendAndEnd = [&] {
        const HTTPResponse response = send(*client, makeRequest(server.url("/"), Type::CLIENT_THREAD));
        client.reset();
        _exit(response.getReason().find("forked") == std::string::npos ? 1 : 0);
    };
    EXPECT_EXIT(sendAndEnd(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(send(*client, server.url("/")).getStatus(), 200) << "the parent's is as before";
}

} // namespace

// Tests of the client and of the local service on systems with signals, file descriptors and fork.

#include "Testing/LocalService.h"
#include "Tests/Support/FailingCalls.h"
#include "Tests/Support/Network.h"
#include "Tests/Support/Sending.h"

#include <arpa/inet.h>
#include <array>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace {

using Qx::CurlHTTPClient;
using Qx::HTTPRequest;
using Qx::HTTPResponse;
using Type = HTTPRequest::ExecutionType;
using namespace std::chrono_literals;

TEST(CurlHTTPClient, ConstructorThrowsWithoutDescriptors) {
    FailingCalls::socketpair = true;
    EXPECT_THROW(CurlHTTPClient client(clientOptions()), std::system_error);
    FailingCalls::socketpair = false;
}

TEST(LocalService, ConstructorThrowsWithoutAThread) {
    const auto scarcity = FailingCalls::scopedThreadsLeft(0);
    EXPECT_THROW(Orvane::Testing::LocalService(Orvane::Testing::PreparedAnswers::sample(), "t", 0), std::runtime_error);
}

TEST(CurlHTTPClient, NamesTheThreadOfACompletion) {
    const RawServer server(Serving::well);
    CurlHTTPClient client(clientOptions());
    std::promise<std::string> answered;
    HTTPRequest request = makeRequest(server.url("/"), Type::CLIENT_THREAD, [&](const HTTPResponse&) {
        std::array<char, 16> name{};
        pthread_getname_np(pthread_self(), name.data(), name.size());
        answered.set_value(name.data());
    });
    client.queueRequest(request);
    EXPECT_EQ(answered.get_future().get(), "a-thread-name-l");
}

TEST(CurlHTTPClient, FailsWithoutBusyWaitingIfItCannotPoll) {
    const RawServer silent(Serving::silently);
    const RawServer good(Serving::well);
    CurlHTTPClient client(clientOptions());
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

TEST(CurlHTTPClient, LeavesSignalsToTheHost) {
    CurlHTTPClient client(clientOptions());
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
        EXPECT_EQ(blocked >> (SIGSEGV - 1) & 1, 0U) << "signals for a thread's own faults are not blocked";
    }
    sigset_t own;
    pthread_sigmask(SIG_BLOCK, nullptr, &own);
    EXPECT_EQ(sigismember(&own, SIGTERM), 0) << "the mask of the calling thread is unchanged";
    EXPECT_GE(threads, 2) << "the transfer thread, and one that has run a completion";
}

TEST(CurlHTTPClient, LetsNoOtherProgramInheritItsConnections) {
    const RawServer server(Serving::well);
    CurlHTTPClient client(clientOptions());
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

TEST(CurlHTTPClient, FailsWithAReasonInAForkedChildAndStillWorksInTheParent) {
    const RawServer server(Serving::well);
    auto client = std::make_unique<CurlHTTPClient>(clientOptions());
    EXPECT_EQ(send(*client, server.url("/")).getStatus(), 200);
    const auto sendAndEnd = [&] {
        const HTTPResponse response = send(*client, makeRequest(server.url("/"), Type::CLIENT_THREAD));
        client.reset();
        _exit(response.getReason().find("forked") == std::string::npos ? 1 : 0);
    };
    EXPECT_EXIT(sendAndEnd(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(send(*client, server.url("/")).getStatus(), 200) << "the parent's client still works";
}

} // namespace

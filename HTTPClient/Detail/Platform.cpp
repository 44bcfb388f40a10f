#include "HTTPClient/Detail/Platform.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <linux/tcp.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace Qx::Detail {

namespace {

// Blocks all signals in the calling thread while it lives, but for those that a thread's own fault raises. A new thread
// inherits that.
class BlockedSignals {
public:
    BlockedSignals() {
        sigset_t others;
        sigfillset(&others);
        for (const int ownFault : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGSYS, SIGTRAP})
            sigdelset(&others, ownFault);
        pthread_sigmask(SIG_BLOCK, &others, &before_);
    }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_{};
};

} // namespace

std::thread startThread(std::function<void()> run) {
    const BlockedSignals blocked;
    return std::thread(std::move(run));
}

void nameThisThread(const std::string& name) {
    // Linux takes no more than 15 bytes.
    pthread_setname_np(pthread_self(), name.substr(0, 15).c_str());
}

long processId() {
    return getpid();
}

int openSocket(int family, int type, int protocol) {
    return socket(family, type | SOCK_CLOEXEC, protocol);
}

int closeSocket(int socket) {
    return close(socket);
}

int localPortOf(int socket) {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    if (getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return 0;
    // The port stands at the same place for both families.
    static_assert(offsetof(sockaddr_in, sin_port) == offsetof(sockaddr_in6, sin6_port));
    return ntohs(reinterpret_cast<const sockaddr_in*>(&address)->sin_port);
}

bool isConnectedTo(int socket, const std::string& address, int port) {
    sockaddr_storage peer{};
    socklen_t length = sizeof peer;
    std::array<char, NI_MAXHOST> host{};
    std::array<char, NI_MAXSERV> service{};
    return getpeername(socket, reinterpret_cast<sockaddr*>(&peer), &length) == 0 &&
           getnameinfo(reinterpret_cast<sockaddr*>(&peer), length, host.data(), host.size(), service.data(),
                       service.size(), NI_NUMERICHOST | NI_NUMERICSERV) == 0 &&
           service.data() == std::to_string(port) && std::string(host.data()).starts_with(address);
}

bool hasUnread(int socket) {
    pollfd watched{socket, POLLIN, 0};
    return poll(&watched, 1, 0) > 0;
}

std::uint64_t countReceived(int socket) {
    tcp_info info{};
    socklen_t length = sizeof info;
    return getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &length) == 0 ? info.tcpi_bytes_received : 0;
}

void shutDown(int socket) {
    shutdown(socket, SHUT_RDWR);
}

} // namespace Qx::Detail

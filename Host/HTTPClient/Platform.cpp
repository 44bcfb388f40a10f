#include "Host/HTTPClient/Platform.h"

#include <csignal>
#include <cstddef>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <poll.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace OrvaneHost {

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

} // namespace OrvaneHost

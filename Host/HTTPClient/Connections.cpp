#include "Host/HTTPClient/Connections.h"

#include "Host/HTTPClient/Platform.h"

#include <new>
#include <openssl/ssl.h>
#include <string_view>
#include <utility>

namespace OrvaneHost {

namespace {

CURLSH* initShare() {
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    return initialised == CURLE_OK ? curl_share_init() : nullptr;
}

bool runsOnOpenSSL() {
    static const char* const name = curl_version_info(CURLVERSION_NOW)->ssl_version;
    return name && std::string_view(name).starts_with("OpenSSL/");
}

} // namespace

Connections::Connections() : share_(initShare()) {
    if (!share_ || curl_share_setopt(share_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION) != CURLSHE_OK)
        throw std::bad_alloc();
}

bool Connections::attach(CURL* easy) {
    bool allSet = true;
    const auto set = [&](CURLoption option, auto value) {
        allSet = allSet && curl_easy_setopt(easy, option, value) == CURLE_OK;
    };
    set(CURLOPT_SHARE, share_.get());
    set(CURLOPT_OPENSOCKETFUNCTION, &Connections::open);
    set(CURLOPT_OPENSOCKETDATA, this);
    set(CURLOPT_CLOSESOCKETFUNCTION, &Connections::close);
    set(CURLOPT_CLOSESOCKETDATA, this);
    if (runsOnOpenSSL()) {
        set(CURLOPT_SSL_CTX_FUNCTION, &Connections::watchHandshakes);
        set(CURLOPT_SSL_CTX_DATA, this);
    }
    return allSet;
}

void Connections::beginRound(std::chrono::milliseconds limit) {
    deadline_ = std::chrono::steady_clock::now() + limit;
}

void Connections::end() {
    hasEnded_ = true;
}

bool Connections::hasEnded() const {
    return hasEnded_;
}

bool Connections::isOverdue() const {
    return hasEnded_ || std::chrono::steady_clock::now() > deadline_;
}

curl_socket_t Connections::find(int localPort) {
    for (auto& [socket, use] : uses_) {
        if (use.localPort == 0)
            use.localPort = localPortOf(socket);
        if (use.localPort == localPort)
            return socket;
    }
    return CURL_SOCKET_BAD;
}

bool Connections::isQuiet(curl_socket_t socket) {
    const auto found = uses_.find(socket);
    return found != uses_.end() && (!std::exchange(found->second.isUsed, true) || !hasUnread(socket));
}

curl_socket_t Connections::open(void* connections, curlsocktype, curl_sockaddr* address) noexcept {
    const curl_socket_t socket = openSocket(address->family, address->socktype, address->protocol);
    if (socket == CURL_SOCKET_BAD)
        return socket;
    try {
        static_cast<Connections*>(connections)->uses_[socket] = {};
        return socket;
    } catch (const std::bad_alloc&) {
        closeSocket(socket);
        return CURL_SOCKET_BAD;
    }
}

int Connections::close(void* connections, curl_socket_t socket) noexcept {
    static_cast<Connections*>(connections)->uses_.erase(socket);
    return closeSocket(socket);
}

// A handshake goes on within one call as long as messages come.
CURLcode Connections::watchHandshakes(CURL*, void* context, void* connections) noexcept {
    auto* tls = static_cast<SSL_CTX*>(context);
    SSL_CTX_set_msg_callback_arg(tls, connections);
    SSL_CTX_set_msg_callback(tls, [](int, int, int, const void*, std::size_t, SSL*, void* watching) {
        const auto& watcher = *static_cast<const Connections*>(watching);
        if (!watcher.isOverdue())
            return;
        for (const auto& [socket, use] : watcher.uses_)
            shutDown(socket);
    });
    return CURLE_OK;
}

} // namespace OrvaneHost

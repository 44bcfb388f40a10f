#include "HTTPClient/Detail/Connections.h"

#include "HTTPClient/Detail/Platform.h"

#include <new>
#include <openssl/ssl.h>
#include <string_view>
#include <utility>

namespace Qx::Detail {

namespace {

CURLSH* initShare() {
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    return initialised == CURLE_OK ? curl_share_init() : nullptr;
}

} // namespace

bool runsOnOpenSSL() {
    static const char* const name = curl_version_info(CURLVERSION_NOW)->ssl_version;
    return name && std::string_view(name).starts_with("OpenSSL/");
}

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
    roundStart_ = std::chrono::steady_clock::now();
    limit_ = limit;
    isInRound_ = true;
    ++round_;
}

void Connections::endRound() {
    isInRound_ = false;
}

std::uint64_t Connections::round() const {
    return round_;
}

void Connections::hurry() {
    limit_ = std::chrono::milliseconds(50);
}

bool Connections::isOverdue() const {
    return isInRound_ && std::chrono::steady_clock::now() - roundStart_ > limit_.load();
}

curl_socket_t Connections::find(int localPort, const std::string& peer, int peerPort) {
    for (auto& [socket, use] : uses_) {
        if (use.localPort == 0)
            use.localPort = localPortOf(socket);
        if (use.localPort == localPort && isConnectedTo(socket, peer, peerPort))
            return socket;
    }
    return CURL_SOCKET_BAD;
}

bool Connections::isQuiet(curl_socket_t socket, bool isTLS) {
    const auto found = uses_.find(socket);
    if (found == uses_.end())
        return false;
    const bool isFirstUse = !std::exchange(found->second.isUsed, true);
    return (isFirstUse && isTLS) || !hasUnread(socket);
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
    SSL_CTX_set_msg_callback(tls, [](int isWrite, int, int type, const void*, std::size_t, SSL* ssl, void* watching) {
        const auto& watcher = *static_cast<const Connections*>(watching);
        if (isWrite != 0 || type != SSL3_RT_HANDSHAKE || SSL_in_init(ssl) == 0 || !watcher.isOverdue())
            return;
        // Which of the new connections it is, nobody tells.
        for (const auto& [socket, use] : watcher.uses_)
            if (!use.isUsed)
                shutDown(socket);
    });
    return CURLE_OK;
}

} // namespace Qx::Detail

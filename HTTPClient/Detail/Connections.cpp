#include "HTTPClient/Detail/Connections.h"

#include "HTTPClient/Detail/CurlTLS.h"
#include "HTTPClient/Detail/Sockets.h"

#include <boost/system/system_category.hpp>
#include <new>
#include <utility>

namespace Qx::Detail {

namespace {

CURLSH* initShare() {
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    return initialised == CURLE_OK ? curl_share_init() : nullptr;
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
        set(CURLOPT_SSL_CTX_FUNCTION, &Connections::watchTLS);
        set(CURLOPT_SSL_CTX_DATA, this);
    }
    return allSet;
}

void Connections::beginRound(std::chrono::milliseconds limit) {
    limit_ = limit;
    ++round_;
}

std::uint64_t Connections::round() const {
    return round_;
}

void Connections::shortenLimit() {
    limit_ = std::chrono::milliseconds(50);
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

std::string Connections::openFailure() const {
    return openError_ == 0 ? "" : boost::system::system_category().message(openError_);
}

std::uint64_t Connections::take(curl_socket_t socket) {
    const auto found = uses_.find(socket);
    return found == uses_.end() ? 0 : found->second.number = ++lastUse_;
}

void Connections::abandon(curl_socket_t socket, std::uint64_t use) const {
    const auto found = uses_.find(socket);
    if (found != uses_.end() && found->second.number == use)
        shutDown(socket);
}

bool Connections::isQuiet(curl_socket_t socket, bool isTLS) {
    const auto found = uses_.find(socket);
    if (found == uses_.end())
        return false;
    const bool isFirstUse = !std::exchange(found->second.isUsed, true);
    return (isFirstUse && isTLS) || !hasUnread(socket);
}

curl_socket_t Connections::open(void* connections, curlsocktype, curl_sockaddr* address) noexcept {
    auto& opening = *static_cast<Connections*>(connections);
    const curl_socket_t socket = openSocket(address->family, address->socktype, address->protocol);
    opening.openError_ = socket == CURL_SOCKET_BAD ? lastSocketError() : 0;
    if (socket == CURL_SOCKET_BAD)
        return socket;
    try {
        opening.uses_[socket] = {};
        return socket;
    } catch (const std::bad_alloc&) {
        closeSocket(socket);
        return CURL_SOCKET_BAD;
    }
}

int Connections::close(void* connections, curl_socket_t socket) noexcept {
    auto& closing = *static_cast<Connections*>(connections);
    closing.uses_.erase(socket);
    std::erase_if(closing.socketsOfTLS_, [socket](const auto& entry) { return entry.second == socket; });
    return closeSocket(socket);
}

// OpenSSL keeps reading within one call as long as messages of TLS itself arrive, during the
// handshake and after it.
CURLcode Connections::watchTLS(CURL* easy, void* context, void* connections) noexcept {
    auto& watching = *static_cast<Connections*>(connections);
    long localPort = 0;
    long peerPort = 0;
    char* peer = nullptr;
    curl_easy_getinfo(easy, CURLINFO_LOCAL_PORT, &localPort);
    curl_easy_getinfo(easy, CURLINFO_PRIMARY_PORT, &peerPort);
    curl_easy_getinfo(easy, CURLINFO_PRIMARY_IP, &peer);
    try {
        const curl_socket_t socket =
            watching.find(static_cast<int>(localPort), peer ? peer : "", static_cast<int>(peerPort));
        if (socket != CURL_SOCKET_BAD)
            watching.socketsOfTLS_[context] = socket;
    } catch (const std::bad_alloc&) {
        return CURLE_OUT_OF_MEMORY;
    }
    watchHandshake(context, watching);
    return CURLE_OK;
}

void Connections::onHandshakeMessage(const void* context) {
    const auto socket = socketsOfTLS_.find(context);
    const auto found = socket == socketsOfTLS_.end() ? uses_.end() : uses_.find(socket->second);
    if (found == uses_.end())
        return;
    Use& use = found->second;
    const auto now = std::chrono::steady_clock::now();
    if (std::exchange(use.round, round_) != round_) {
        use.roundStart = now;
        use.messages = 0;
    }
    // A handshake has about ten messages; if up to this many take long, this machine may just be
    // slow.
    constexpr int many = 100;
    if (++use.messages > many && now - use.roundStart > limit_.load())
        shutDown(found->first);
}

} // namespace Qx::Detail

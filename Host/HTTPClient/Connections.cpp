#include "Host/HTTPClient/Connections.h"

#include "Host/HTTPClient/Platform.h"

#include <new>

namespace OrvaneHost {

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
    return curl_easy_setopt(easy, CURLOPT_SHARE, share_.get()) == CURLE_OK &&
           curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &Connections::open) == CURLE_OK &&
           curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, this) == CURLE_OK &&
           curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, &Connections::close) == CURLE_OK &&
           curl_easy_setopt(easy, CURLOPT_CLOSESOCKETDATA, this) == CURLE_OK;
}

bool Connections::isQuiet(int localPort) {
    bool isQuiet = true;
    for (auto& [socket, isUsed] : isUsed_) {
        if (localPortOf(socket) != localPort)
            continue;
        isQuiet = isQuiet && !(isUsed && hasReceived(socket));
        isUsed = true;
    }
    return isQuiet;
}

curl_socket_t Connections::open(void* connections, curlsocktype, curl_sockaddr* address) noexcept {
    const curl_socket_t socket = openSocket(address->family, address->socktype, address->protocol);
    if (socket == CURL_SOCKET_BAD)
        return socket;
    try {
        static_cast<Connections*>(connections)->isUsed_[socket] = false;
        return socket;
    } catch (const std::bad_alloc&) {
        closeSocket(socket);
        return CURL_SOCKET_BAD;
    }
}

int Connections::close(void* connections, curl_socket_t socket) noexcept {
    static_cast<Connections*>(connections)->isUsed_.erase(socket);
    return closeSocket(socket);
}

} // namespace OrvaneHost

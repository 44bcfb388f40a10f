#include "HTTPClient/Detail/Sockets.h"

#include "HTTPClient/Detail/SystemSockets.h"

#include <array>
#include <cstddef>

namespace Qx::Detail {

int localPortOf(curl_socket_t socket) {
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    if (getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0)
        return 0;
    // The port is at the same offset for both address families.
    static_assert(offsetof(sockaddr_in, sin_port) == offsetof(sockaddr_in6, sin6_port));
    return ntohs(reinterpret_cast<const sockaddr_in*>(&address)->sin_port);
}

bool isConnectedTo(curl_socket_t socket, const std::string& address, int port) {
    sockaddr_storage peer{};
    socklen_t length = sizeof peer;
    std::array<char, NI_MAXHOST> host{};
    std::array<char, NI_MAXSERV> service{};
    return getpeername(socket, reinterpret_cast<sockaddr*>(&peer), &length) == 0 &&
           getnameinfo(reinterpret_cast<sockaddr*>(&peer), length, host.data(), host.size(), service.data(),
                       service.size(), NI_NUMERICHOST | NI_NUMERICSERV) == 0 &&
           service.data() == std::to_string(port) && std::string(host.data()).starts_with(address);
}

} // namespace Qx::Detail

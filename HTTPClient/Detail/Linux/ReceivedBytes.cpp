#include "HTTPClient/Detail/Sockets.h"

#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace Qx::Detail {

std::uint64_t countReceived(curl_socket_t socket) {
    tcp_info info{};
    socklen_t length = sizeof info;
    return getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &length) == 0 ? info.tcpi_bytes_received : 0;
}

} // namespace Qx::Detail

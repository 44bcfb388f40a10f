#include "HTTPClient/Detail/Sockets.h"

#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Qx::Detail {

int lastSocketError() {
    return errno;
}

int closeSocket(curl_socket_t socket) {
    return close(socket);
}

bool hasUnread(curl_socket_t socket) {
    pollfd watched{socket, POLLIN, 0};
    return poll(&watched, 1, 0) > 0;
}

void shutDown(curl_socket_t socket) {
    shutdown(socket, SHUT_RDWR);
}

} // namespace Qx::Detail

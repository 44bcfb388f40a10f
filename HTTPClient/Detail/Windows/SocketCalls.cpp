#include "HTTPClient/Detail/Sockets.h"

#include <winsock2.h>

namespace Qx::Detail {

int lastSocketError() {
    return WSAGetLastError();
}

int closeSocket(curl_socket_t socket) {
    return closesocket(socket);
}

bool hasUnread(curl_socket_t socket) {
    WSAPOLLFD watched{socket, POLLIN, 0};
    return WSAPoll(&watched, 1, 0) != 0; // An error counts as unread data.
}

void shutDown(curl_socket_t socket) {
    shutdown(socket, SD_BOTH);
}

} // namespace Qx::Detail

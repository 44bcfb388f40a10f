#include "HTTPClient/Detail/Sockets.h"

#include <sys/socket.h>

namespace Qx::Detail {

// In one call, since a program could be started between two.
curl_socket_t openSocket(int family, int type, int protocol) {
    return socket(family, type | SOCK_CLOEXEC, protocol);
}

} // namespace Qx::Detail

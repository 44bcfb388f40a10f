#include "HTTPClient/Detail/Sockets.h"

#include <sys/socket.h>

namespace Qx::Detail {

// In a single call: between two, another thread could start a program.
curl_socket_t openSocket(int family, int type, int protocol) {
    return socket(family, type | SOCK_CLOEXEC, protocol);
}

} // namespace Qx::Detail

#include "HTTPClient/Detail/Sockets.h"

#include <fcntl.h>
#include <sys/socket.h>

namespace Qx::Detail {

curl_socket_t openSocket(int family, int type, int protocol) {
    const int opened = socket(family, type, protocol);
    if (opened >= 0)
        fcntl(opened, F_SETFD, FD_CLOEXEC);
    return opened;
}

} // namespace Qx::Detail

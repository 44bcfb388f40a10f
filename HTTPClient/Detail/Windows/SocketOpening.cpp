#include "HTTPClient/Detail/Sockets.h"

#include <winsock2.h>

namespace Qx::Detail {

curl_socket_t openSocket(int family, int type, int protocol) {
    return WSASocketW(family, type, protocol, nullptr, 0, WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
}

} // namespace Qx::Detail

#include "HTTPClient/Detail/Sockets.h"

namespace Qx::Detail {

std::uint64_t countReceived(curl_socket_t) {
    return 0;
}

} // namespace Qx::Detail

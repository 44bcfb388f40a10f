#pragma once

#include "Host/HTTPClient/Curl.h"

#include <map>

namespace OrvaneHost {

/// What the transfers of one client share: TLS sessions, and the sockets of their connections. To be used by one thread
/// at a time, and to outlive the connections.
class Connections {
public:
    /// Throws `std::bad_alloc`.
    Connections();
    Connections(const Connections&) = delete;
    Connections& operator=(const Connections&) = delete;

    /// Lets `easy` share them. False if there is no memory for that.
    bool attach(CURL* easy);

    /// Whether the connection from that port has no use yet, or has received nothing since the last: what comes without
    /// being asked for would be taken for the response to the next request. Counts as a use.
    bool isQuiet(int localPort);

private:
    static curl_socket_t open(void* connections, curlsocktype, curl_sockaddr* address) noexcept;
    static int close(void* connections, curl_socket_t socket) noexcept;

    std::map<curl_socket_t, bool> isUsed_;
    CurlShare share_;
};

} // namespace OrvaneHost

#pragma once

#include "HTTPClient/Detail/Curl.h"

#include <cstdint>
#include <string>

// What libcurl does not tell of its sockets, or leaves to others.
namespace Qx::Detail {

/// `socket`, for a socket that programs which the host starts do not inherit.
curl_socket_t openSocket(int family, int type, int protocol);

/// The system's number for why `openSocket` has failed.
int lastSocketError();

/// `close` for it.
int closeSocket(curl_socket_t socket);

/// The port of this machine that it is bound to, or 0.
int localPortOf(curl_socket_t socket);

/// Whether the other end has that address, in numbers, and that port.
bool isConnectedTo(curl_socket_t socket, const std::string& address, int port);

/// Whether something has come that nobody has read, the end of the connection included.
bool hasUnread(curl_socket_t socket);

/// How many bytes have come over the connection; 0 where the system does not tell.
std::uint64_t countReceived(curl_socket_t socket);

/// Ends the connection in both directions, without waiting for anything.
void shutDown(curl_socket_t socket);

} // namespace Qx::Detail

#pragma once

#include "HTTPClient/Detail/Curl.h"

#include <cstdint>
#include <string>

// What libcurl does not report about its sockets, or leaves to its users.
namespace Qx::Detail {

/// Like `socket`, but programs that the host starts do not inherit the socket.
curl_socket_t openSocket(int family, int type, int protocol);

/// Returns the system's error number after `openSocket` has failed.
int lastSocketError();

/// Closes the socket. Returns 0 on success.
int closeSocket(curl_socket_t socket);

/// Returns the local port that the socket is bound to, or 0.
int localPortOf(curl_socket_t socket);

/// Returns whether the peer has that numeric address and that port.
bool isConnectedTo(curl_socket_t socket, const std::string& address, int port);

/// Returns whether there is unread data, or the connection has ended.
bool hasUnread(curl_socket_t socket);

/// Returns how many bytes the connection has received; 0 where the system does not report it.
std::uint64_t countReceived(curl_socket_t socket);

/// Shuts down the connection in both directions, without waiting.
void shutDown(curl_socket_t socket);

} // namespace Qx::Detail

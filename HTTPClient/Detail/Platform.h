#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <thread>

// What the operating system is asked for beyond the standard library.
namespace Qx::Detail {

/// Starts a thread that takes none of the signals that are sent to the process: they are for the host's threads.
std::thread startThread(std::function<void()> run);

/// Names the calling thread, with as much of `name` as the system takes.
void nameThisThread(const std::string& name);

/// A number that a forked child does not share with its parent.
long processId();

/// `socket`, for a socket that programs which the host starts do not inherit.
int openSocket(int family, int type, int protocol);

/// `close` for it.
int closeSocket(int socket);

/// The port of this machine that it is bound to, or 0.
int localPortOf(int socket);

/// Whether the other end has that address, in numbers, and that port.
bool isConnectedTo(int socket, const std::string& address, int port);

/// Whether something has come that nobody has read, the end of the connection included.
bool hasUnread(int socket);

/// How many bytes have come over the connection; 0 where the system does not tell.
std::uint64_t countReceived(int socket);

/// Ends the connection in both directions, without waiting for anything.
void shutDown(int socket);

} // namespace Qx::Detail

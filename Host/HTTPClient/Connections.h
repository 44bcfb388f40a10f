#pragma once

#include "Host/HTTPClient/Curl.h"

#include <atomic>
#include <chrono>
#include <map>

namespace OrvaneHost {

/// What the transfers of one client share: TLS sessions, and the sockets of their connections. To be used by one thread
/// at a time, but for `end`, and to outlive the connections.
class Connections {
public:
    /// Throws `std::bad_alloc`.
    Connections();
    Connections(const Connections&) = delete;
    Connections& operator=(const Connections&) = delete;

    /// Lets `easy` share them. False if there is no memory for that.
    bool attach(CURL* easy);

    /// To be called before each round of libcurl's work, and how long it may take. A peer that never pauses would
    /// keep libcurl in one call for good.
    void beginRound(std::chrono::milliseconds limit);

    /// Ends the round, and every other from now on. May be called from any thread.
    void end();

    bool hasEnded() const;

    /// Whether the round has taken too long.
    bool isOverdue() const;

    /// The socket of the connection from that port, or none.
    curl_socket_t find(int localPort);

    /// Whether the connection has no use yet, or has received nothing since the last: what comes without being asked
    /// for would be taken for the response to the next request. False for none. Counts as a use.
    bool isQuiet(curl_socket_t socket);

private:
    struct Use {
        int localPort = 0; ///< Asked for until there is one.
        bool isUsed = false;
    };

    static curl_socket_t open(void* connections, curlsocktype, curl_sockaddr* address) noexcept;
    static int close(void* connections, curl_socket_t socket) noexcept;
    static CURLcode watchHandshakes(CURL*, void* context, void* connections) noexcept;

    std::map<curl_socket_t, Use> uses_;
    std::chrono::steady_clock::time_point deadline_;
    std::atomic<bool> hasEnded_ = false;
    CurlShare share_;
};

} // namespace OrvaneHost

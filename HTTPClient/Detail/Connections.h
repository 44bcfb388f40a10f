#pragma once

#include "HTTPClient/Detail/Curl.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <string>

namespace Qx::Detail {

/// Whether libcurl leaves TLS to OpenSSL, which tells more of a connection than others.
bool runsOnOpenSSL();

/// What the transfers of one client share: TLS sessions, and the sockets of their connections. To be used by one thread
/// at a time, except for `hurry`, and to outlive the connections.
class Connections {
public:
    /// Throws `std::bad_alloc`.
    Connections();
    Connections(const Connections&) = delete;
    Connections& operator=(const Connections&) = delete;

    /// Lets `easy` share them. False if there is no memory for that.
    bool attach(CURL* easy);

    /// To be called before and after each round of libcurl's work, and how long a handshake may keep it in one call. A
    /// peer that never pauses would do so for good.
    void beginRound(std::chrono::milliseconds limit);
    void endRound();

    /// The number of the round.
    std::uint64_t round() const;

    /// Lets no handshake hold up this round for longer, since somebody waits for its end. May be called from any
    /// thread.
    void hurry();

    /// The socket of the connection between that port and that peer, or none.
    curl_socket_t find(int localPort, const std::string& peer, int peerPort);

    /// Whether the connection has received nothing that nobody has asked for, which would be taken for the response to
    /// the next request. What comes over a new one with TLS belongs to that. False for no connection. Counts as a use.
    bool isQuiet(curl_socket_t socket, bool isTLS);

private:
    struct Use {
        int localPort = 0; ///< Asked for until there is one.
        bool isUsed = false;
    };

    bool isOverdue() const;

    static curl_socket_t open(void* connections, curlsocktype, curl_sockaddr* address) noexcept;
    static int close(void* connections, curl_socket_t socket) noexcept;
    static CURLcode watchHandshakes(CURL*, void* context, void* connections) noexcept;

    std::map<curl_socket_t, Use> uses_;
    std::chrono::steady_clock::time_point roundStart_;
    std::atomic<std::chrono::milliseconds> limit_{};
    std::uint64_t round_ = 0;
    bool isInRound_ = false;
    CurlShare share_;
};

} // namespace Qx::Detail

#pragma once

#include "HTTPClient/Detail/Curl.h"
#include "HTTPClient/Detail/CurlTLS.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <string>

namespace Qx::Detail {

/// What the transfers of one `TransferThread` share: TLS sessions, and the sockets of their
/// connections. Must outlive the connections. Not thread-safe, except for `shortenLimit`.
class Connections final : private HandshakeWatcher {
public:
    /// Throws `std::bad_alloc` when memory runs out.
    Connections();
    Connections(const Connections&) = delete;
    Connections& operator=(const Connections&) = delete;

    /// Makes `easy` use the shared TLS sessions and sockets. Returns false when memory runs out.
    bool attach(CURL* easy);

    /// Call before each round of libcurl's work. `limit` is how long the TLS messages of one
    /// connection may keep libcurl in a single call; a peer that never pauses would keep it there
    /// forever.
    void beginRound(std::chrono::milliseconds limit);

    /// Returns the number of the current round.
    std::uint64_t round() const;

    /// Shortens the limit for this round, since another thread is waiting for the round to end.
    /// Thread-safe.
    void shortenLimit();

    /// Returns the socket of the connection between that local port and that peer, or
    /// `CURL_SOCKET_BAD`.
    curl_socket_t find(int localPort, const std::string& peer, int peerPort);

    /// Call when a request takes the connection. Returns a number for this use of it, or 0 if there
    /// is no such connection.
    std::uint64_t take(curl_socket_t socket);

    /// Shuts down the connection of that socket, unless another request has taken it since.
    void abandon(curl_socket_t socket, std::uint64_t use) const;

    /// Returns why the system refused the last socket requested; empty if it did not.
    std::string openFailure() const;

    /// Returns whether the connection has received no unsolicited data, which would be taken for
    /// the response to the next request. Data on a new TLS connection belongs to TLS itself and
    /// does not matter. Returns false if there is no such connection. Marks the connection as used.
    bool isQuiet(curl_socket_t socket, bool isTLS);

private:
    struct Use {
        std::uint64_t number = 0;
        int localPort = 0; ///< 0 until the system reports one.
        bool isUsed = false;
        std::uint64_t round = 0;                          ///< The last round with TLS messages.
        std::chrono::steady_clock::time_point roundStart; ///< When the first of those arrived.
        int messages = 0;                                 ///< How many arrived.
    };

    void onHandshakeMessage(const void* context) override;

    static curl_socket_t open(void* connections, curlsocktype, curl_sockaddr* address) noexcept;
    static int close(void* connections, curl_socket_t socket) noexcept;
    static CURLcode watchTLS(CURL* easy, void* context, void* connections) noexcept;

    std::map<curl_socket_t, Use> uses_;
    std::map<const void*, curl_socket_t> socketsOfTLS_; ///< By each connection's OpenSSL context.
    std::uint64_t lastUse_ = 0;
    std::atomic<std::chrono::milliseconds> limit_{};
    std::uint64_t round_ = 0;
    int openError_ = 0;
    CurlShare share_;
};

} // namespace Qx::Detail

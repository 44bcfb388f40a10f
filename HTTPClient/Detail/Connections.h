#pragma once

#include "HTTPClient/Detail/Curl.h"
#include "HTTPClient/Detail/CurlTLS.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <map>
#include <string>

namespace Qx::Detail {

/// What the transfers of one client share: TLS sessions, and the sockets of their connections. To be used by one thread
/// at a time, except for `hurry`, and to outlive the connections.
class Connections final : private HandshakeWatcher {
public:
    /// Throws `std::bad_alloc`.
    Connections();
    Connections(const Connections&) = delete;
    Connections& operator=(const Connections&) = delete;

    /// Lets `easy` share them. False if there is no memory for that.
    bool attach(CURL* easy);

    /// To be called before each round of libcurl's work, with how long the messages of one connection's TLS may keep it
    /// in a call. A peer that never pauses would do so for good.
    void beginRound(std::chrono::milliseconds limit);

    /// The number of the round.
    std::uint64_t round() const;

    /// Lets no connection hold up this round for longer, since somebody waits for its end. May be called from any
    /// thread.
    void hurry();

    /// The socket of the connection between that port and that peer, or none.
    curl_socket_t find(int localPort, const std::string& peer, int peerPort);

    /// To be called when a request takes the connection. Returns a number for this use of it; 0 for no connection.
    std::uint64_t take(curl_socket_t socket);

    /// Ends the connection of that socket, unless another request has taken it.
    void giveUp(curl_socket_t socket, std::uint64_t use) const;

    /// Why the system did not give the last socket that was asked for; empty if it did.
    std::string openFailure() const;

    /// Whether the connection has received nothing that nobody has asked for, which would be taken for the response to
    /// the next request. What comes over a new one with TLS belongs to that. False for no connection. Counts as a use.
    bool isQuiet(curl_socket_t socket, bool isTLS);

private:
    struct Use {
        std::uint64_t number = 0;
        int localPort = 0; ///< Asked for until there is one.
        bool isUsed = false;
        std::uint64_t round = 0; ///< The last one in which messages of TLS came, when its first one did, and how many.
        std::chrono::steady_clock::time_point roundStart;
        int messages = 0;
    };

    void onHandshakeMessage(const void* context) override;

    static curl_socket_t open(void* connections, curlsocktype, curl_sockaddr* address) noexcept;
    static int close(void* connections, curl_socket_t socket) noexcept;
    static CURLcode watchTLS(CURL* easy, void* context, void* connections) noexcept;

    std::map<curl_socket_t, Use> uses_;
    std::map<const void*, curl_socket_t> socketsOfTLS_; ///< By the context that each connection has of its own.
    std::uint64_t lastUse_ = 0;
    std::atomic<std::chrono::milliseconds> limit_{};
    std::uint64_t round_ = 0;
    int openError_ = 0;
    CurlShare share_;
};

} // namespace Qx::Detail

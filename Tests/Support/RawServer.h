#pragma once

#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl.hpp>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>

/// A server on a loopback port that sends arbitrary bytes or nothing, including what no
/// well-behaved server would send. Calls `serve` for each connection, on a thread per connection,
/// and closes the connection afterwards. Without `serve`, it accepts no connections; one connection
/// of its own fills the queue, so that no other can be established.
class RawServer {
public:
    class Connection {
    public:
        /// Reads the next request up to the empty line, as received. Returns an empty string if the
        /// client has disconnected.
        std::string readRequest();

        /// Reads `size` bytes, or fewer if the client disconnects.
        std::string read(std::size_t size);

        /// Returns false once the client has disconnected.
        bool send(std::string_view bytes);

        /// Ends the connection with a reset instead of an orderly close.
        void reset();

        /// Closes the connection in an orderly way, but over TLS without the close_notify alert.
        void cut();

        /// Whether TLS has resumed the session of an earlier connection.
        bool isResumed();

        /// The server's port.
        unsigned port() const;

    private:
        friend class RawServer;
        Connection(boost::asio::ip::tcp::socket socket, RawServer& server);

        // Calls `operation` with the stream to use: with or without TLS.
        template <class Operation>
        auto with(Operation operation);

        boost::asio::ssl::stream<boost::asio::ip::tcp::socket> stream_; // Without TLS, only its next layer is used.
        RawServer& server_;
        std::string received_;
    };

    /// How the server identifies itself over TLS.
    struct Identity {
        std::string certificate; ///< The path of a PEM file, as is the key.
        std::string key;
        int maxVersion = 0; ///< The highest version of TLS that it supports, as OpenSSL numbers them; 0 for any.
        bool offersHTTP2 = false;
    };

    using Serve = std::function<void(Connection&)>;

    /// Uses TLS if there is an identity.
    explicit RawServer(Serve serve, const std::optional<Identity>& identity = {});
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;
    ~RawServer();

    /// The URL of `path` on this server: with the numeric address, or, over TLS, with the host name
    /// in the test certificates.
    std::string url(const std::string& path) const;

    unsigned port() const;

    /// Roughly the first 4,000 bytes of requests, as received.
    std::string received() const;

    /// The highest number of connections that were open at the same time.
    std::size_t mostConnections() const;

private:
    void acceptAll();
    void run(std::unique_ptr<Connection> connection);

    const Serve serve_;
    const bool isSecure_;
    boost::asio::ssl::context context_{boost::asio::ssl::context::tls_server};
    boost::asio::io_context io_;
    boost::asio::ip::tcp::acceptor acceptor_{io_};
    boost::asio::ip::tcp::socket waiting_{io_};
    std::atomic<bool> isEnding_ = false;
    mutable std::mutex mutex_;
    std::condition_variable ended_;
    std::set<Connection*> connections_;
    std::size_t mostConnections_ = 0;
    std::string received_;
    std::thread thread_;
};

namespace Serving {

/// Returns a response with that body.
std::string ok(const std::string& body);

/// Answers each request with what `respond` returns for it.
RawServer::Serve with(std::function<std::string(const std::string& request)> respond);

/// Answers each request with an empty object.
void well(RawServer::Connection& connection);

/// Sends nothing until the client disconnects.
void silently(RawServer::Connection& connection);

} // namespace Serving

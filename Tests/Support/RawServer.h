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

/// A loopback port whose connections get raw bytes, or nothing: also what a well-behaved server can't do. `serve` runs
/// with each connection on a thread of its own, and the connection is closed after it. Without `serve` nobody accepts,
/// and with one connection of its own waiting no other can even be made.
class RawServer {
public:
    class Connection {
    public:
        /// The next request up to the empty line, as it came; empty if the client has gone.
        std::string readRequest();

        /// As many bytes; fewer if the client has gone.
        std::string read(std::size_t size);

        /// False once the client has gone.
        bool send(std::string_view bytes);

        /// Ends the connection with a reset instead of an orderly close.
        void reset();

        /// Ends it in order, but over TLS without the notification that belongs to it.
        void cut();

        /// Whether TLS has gone on with the session of an earlier connection.
        bool isResumed();

        /// That of the server.
        unsigned port() const;

    private:
        friend class RawServer;
        Connection(boost::asio::ip::tcp::socket socket, RawServer& server);

        // Calls `operation` with the stream to read from and write to.
        template <class Operation>
        auto with(Operation operation);

        boost::asio::ssl::stream<boost::asio::ip::tcp::socket> stream_; // Without TLS only the layer below is used.
        RawServer& server_;
        std::string received_;
    };

    /// What the server shows of itself over TLS.
    struct Identity {
        std::string certificate; ///< The path of a PEM file, as is the key.
        std::string key;
        int maxVersion = 0; ///< The last version of TLS that it speaks, as OpenSSL counts them; 0 for any.
        bool offersHTTP2 = false;
    };

    using Serve = std::function<void(Connection&)>;

    /// It speaks TLS if it has an identity.
    explicit RawServer(Serve serve, const std::optional<Identity>& identity = {});
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;
    ~RawServer();

    /// With the address in numbers, or with the name for which the certificates of the tests are, with TLS.
    std::string url(const std::string& path) const;

    unsigned port() const;

    /// The first requests that have come, as they came.
    std::string received() const;

    /// How many connections were open at most at the same time.
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

/// A response of that body.
std::string ok(const std::string& body);

/// Answers each request with what `respond` makes of it.
RawServer::Serve with(std::function<std::string(const std::string& request)> respond);

/// Answers each request with an empty object.
void well(RawServer::Connection& connection);

/// Says nothing until the client goes away.
void silently(RawServer::Connection& connection);

} // namespace Serving

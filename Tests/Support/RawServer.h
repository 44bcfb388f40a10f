#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl.hpp>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <thread>

/// A loopback port whose connections get raw bytes, or nothing: also what a well-behaved server can't do. `serve` runs
/// with each connection on a thread of its own, and the connection is closed after it. Without `serve` nobody accepts,
/// and with one connection of its own waiting no other can even be made.
class RawServer {
public:
    using Context = boost::asio::ssl::context;

    class Connection {
    public:
        Connection(boost::asio::ip::tcp::socket socket, RawServer& server);

        /// The next request up to the empty line, as it came; empty if the client has gone.
        std::string readRequest();

        /// False once the client has gone.
        bool send(std::string_view bytes);

        void waitUntilClosed();

        /// Lets the connection end with a reset instead of an orderly close.
        void reset();

        /// Lets a TLS connection end without saying so.
        void cut() { isCut_ = true; }

        /// Whether TLS has gone on with the session of an earlier connection.
        bool isResumed();

        unsigned clientPort() const;

    private:
        friend class RawServer;
        boost::asio::ssl::stream<boost::asio::ip::tcp::socket> stream_;
        RawServer& server_;
        const bool isSecure_;
        bool isCut_ = false;
        std::string received_;
    };

    using Serve = std::function<void(Connection&)>;

    /// With a context it speaks TLS.
    explicit RawServer(Serve serve, std::shared_ptr<Context> context = nullptr);
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;
    ~RawServer();

    /// With the address in numbers, or with the name for which the certificates of the tests are, with TLS.
    std::string url(const std::string& path) const;

    unsigned port() const { return acceptor_.local_endpoint().port(); }

    /// The first requests that have come, as they came.
    std::string received() const;

    /// How many connections were open at most at the same time.
    std::size_t mostConnections() const;

private:
    void acceptAll();
    void run(std::unique_ptr<Connection> connection);

    const Serve serve_;
    const std::shared_ptr<Context> context_;
    boost::asio::io_context io_;
    boost::asio::ip::tcp::acceptor acceptor_{io_};
    boost::asio::ip::tcp::socket waiting_{io_};
    mutable std::mutex mutex_;
    std::condition_variable connectionEnded_;
    std::set<Connection*> connections_;
    std::size_t mostConnections_ = 0;
    std::string received_;
    std::thread acceptorThread_;
};

namespace Serving {

/// A response of that body; headers end their lines.
std::string ok(const std::string& body, const std::string& headers = "");

/// Answers each request with what `respond` makes of it.
RawServer::Serve with(std::function<std::string(const std::string& request)> respond);

/// Answers each request with an empty object.
void well(RawServer::Connection& connection);

/// Says nothing until the client goes away.
void silently(RawServer::Connection& connection);

} // namespace Serving

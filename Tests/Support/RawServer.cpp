#include "Tests/Support/RawServer.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>
#include <sys/socket.h>

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

namespace {

// So that there is something to make a stream of where there is no TLS.
RawServer::Context& unused() {
    static RawServer::Context context(RawServer::Context::tls_server);
    return context;
}

} // namespace

RawServer::Connection::Connection(tcp::socket socket, RawServer& server)
    : stream_(std::move(socket), server.context_ ? *server.context_ : unused()),
      server_(server),
      isSecure_(server.context_ != nullptr) {
    stream_.next_layer().set_option(tcp::no_delay(true));
}

std::string RawServer::Connection::readRequest() {
    error_code error;
    const auto buffer = asio::dynamic_buffer(received_);
    const std::size_t size = isSecure_ ? asio::read_until(stream_, buffer, "\r\n\r\n", error)
                                       : asio::read_until(stream_.next_layer(), buffer, "\r\n\r\n", error);
    if (error)
        return {};
    std::string request = received_.substr(0, size);
    received_.erase(0, size);
    constexpr std::size_t enough = 100'000;
    const std::lock_guard lock(server_.mutex_);
    if (server_.received_.size() < enough)
        server_.received_ += request;
    return request;
}

bool RawServer::Connection::send(std::string_view bytes) {
    error_code error;
    if (isSecure_)
        asio::write(stream_, asio::buffer(bytes), error);
    else
        asio::write(stream_.next_layer(), asio::buffer(bytes), error);
    return !error;
}

void RawServer::Connection::waitUntilClosed() {
    while (!readRequest().empty()) {
    }
}

void RawServer::Connection::reset() {
    stream_.next_layer().set_option(asio::socket_base::linger(true, 0));
}

bool RawServer::Connection::isResumed() {
    return SSL_session_reused(stream_.native_handle()) == 1;
}

unsigned RawServer::Connection::clientPort() const {
    return stream_.next_layer().remote_endpoint().port();
}

RawServer::RawServer(Serve serve, std::shared_ptr<Context> context)
    : serve_(std::move(serve)), context_(std::move(context)) {
    acceptor_.open(tcp::v4());
    acceptor_.bind({asio::ip::address_v4::loopback(), 0});
    acceptor_.listen(serve_ ? asio::socket_base::max_listen_connections : 0);
    if (!serve_) {
        waiting_.connect(acceptor_.local_endpoint());
        return;
    }
    acceptorThread_ = std::thread([this] { acceptAll(); });
}

RawServer::~RawServer() {
    shutdown(acceptor_.native_handle(), SHUT_RDWR);
    if (acceptorThread_.joinable())
        acceptorThread_.join();
    std::unique_lock lock(mutex_);
    for (Connection* connection : connections_)
        shutdown(connection->stream_.next_layer().native_handle(), SHUT_RDWR);
    connectionEnded_.wait(lock, [this] { return connections_.empty(); });
}

std::string RawServer::url(const std::string& path) const {
    return (context_ ? "https://localhost:" : "http://127.0.0.1:") + std::to_string(port()) + path;
}

std::string RawServer::received() const {
    const std::lock_guard lock(mutex_);
    return received_;
}

std::size_t RawServer::mostConnections() const {
    const std::lock_guard lock(mutex_);
    return mostConnections_;
}

void RawServer::acceptAll() {
    error_code error;
    for (tcp::socket socket = acceptor_.accept(error); !error; socket = acceptor_.accept(error)) {
        auto connection = std::make_unique<Connection>(std::move(socket), *this);
        const std::lock_guard lock(mutex_);
        connections_.insert(connection.get());
        mostConnections_ = std::max(mostConnections_, connections_.size());
        std::thread([this, connection = std::move(connection)]() mutable { run(std::move(connection)); }).detach();
    }
}

void RawServer::run(std::unique_ptr<Connection> connection) {
    error_code error;
    if (context_)
        connection->stream_.handshake(asio::ssl::stream_base::server, error);
    if (!error)
        serve_(*connection);
    if (context_ && !error && !connection->isCut_)
        connection->stream_.shutdown(error);
    // Under the lock to the end: without connections the server may be gone.
    const std::lock_guard lock(mutex_);
    connections_.erase(connection.get());
    connection.reset();
    connectionEnded_.notify_all();
}

namespace Serving {

std::string ok(const std::string& body, const std::string& headers) {
    return "HTTP/1.1 200 OK\r\n" + headers + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

RawServer::Serve with(std::function<std::string(const std::string&)> respond) {
    return [respond = std::move(respond)](RawServer::Connection& connection) {
        for (std::string request = connection.readRequest(); !request.empty(); request = connection.readRequest())
            connection.send(respond(request));
    };
}

void well(RawServer::Connection& connection) {
    with([](const std::string&) { return ok("{}"); })(connection);
}

void silently(RawServer::Connection& connection) {
    connection.waitUntilClosed();
}

} // namespace Serving

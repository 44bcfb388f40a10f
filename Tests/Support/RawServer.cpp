#include "Tests/Support/RawServer.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/write.hpp>
#include <utility>

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;
using Context = asio::ssl::context;

namespace {

int chooseHTTP2(SSL*, const unsigned char** chosen, unsigned char* size, const unsigned char*, unsigned, void*) {
    constexpr std::string_view name = "h2";
    *chosen = reinterpret_cast<const unsigned char*>(name.data());
    *size = name.size();
    return SSL_TLSEXT_ERR_OK;
}

} // namespace

RawServer::Connection::Connection(tcp::socket socket, RawServer& server)
    : stream_(std::move(socket), server.context_), server_(server) {
    stream_.next_layer().set_option(tcp::no_delay(true));
}

template <class Operation>
auto RawServer::Connection::with(Operation operation) {
    return server_.isSecure_ ? operation(stream_) : operation(stream_.next_layer());
}

std::string RawServer::Connection::readRequest() {
    error_code error;
    const auto buffer = asio::dynamic_buffer(received_);
    const std::size_t size = with([&](auto& stream) { return asio::read_until(stream, buffer, "\r\n\r\n", error); });
    if (error)
        return {};
    std::string request = received_.substr(0, size);
    received_.erase(0, size);
    constexpr std::size_t enough = 4'000;
    const std::lock_guard lock(server_.mutex_);
    if (server_.received_.size() < enough)
        server_.received_ += request;
    return request;
}

std::string RawServer::Connection::read(std::size_t size) {
    error_code error;
    const std::size_t missing = size - std::min(size, received_.size());
    with([&](auto& stream) {
        return asio::read(stream, asio::dynamic_buffer(received_), asio::transfer_at_least(missing), error);
    });
    std::string bytes = received_.substr(0, size);
    received_.erase(0, size);
    return bytes;
}

bool RawServer::Connection::send(std::string_view bytes) {
    error_code error;
    with([&](auto& stream) { return asio::write(stream, asio::buffer(bytes), error); });
    return !error;
}

void RawServer::Connection::reset() {
    error_code gone;
    const std::lock_guard lock(server_.mutex_);
    stream_.next_layer().set_option(asio::socket_base::linger(true, 0), gone);
    stream_.next_layer().close(gone);
}

void RawServer::Connection::cut() {
    error_code gone;
    stream_.next_layer().shutdown(asio::socket_base::shutdown_send, gone);
}

bool RawServer::Connection::isResumed() {
    return SSL_session_reused(stream_.native_handle()) == 1;
}

unsigned RawServer::Connection::port() const {
    return server_.port();
}

RawServer::RawServer(Serve serve, const std::optional<Identity>& identity)
    : serve_(std::move(serve)), isSecure_(identity.has_value()) {
    if (identity) {
        SSL_CTX_set_max_proto_version(context_.native_handle(), identity->maxVersion);
        // Clients resume sessions with the tickets that they keep; a cache on the server would only
        // grow.
        SSL_CTX_set_session_cache_mode(context_.native_handle(), SSL_SESS_CACHE_OFF);
        if (identity->offersHTTP2)
            SSL_CTX_set_alpn_select_cb(context_.native_handle(), chooseHTTP2, nullptr);
        context_.use_certificate_chain_file(identity->certificate);
        context_.use_private_key_file(identity->key, Context::pem);
    }
    acceptor_.open(tcp::v4());
    acceptor_.bind({asio::ip::address_v4::loopback(), 0});
    acceptor_.listen(serve_ ? asio::socket_base::max_listen_connections : 0);
    if (serve_)
        thread_ = std::thread([this] { acceptAll(); });
    else
        waiting_.connect(acceptor_.local_endpoint());
}

RawServer::~RawServer() {
    error_code gone;
    isEnding_ = true;
    if (thread_.joinable()) {
        tcp::socket(io_).connect(acceptor_.local_endpoint(), gone); // Wakes up the thread that accepts.
        thread_.join();
    }
    std::unique_lock lock(mutex_);
    for (Connection* connection : connections_)
        connection->stream_.next_layer().shutdown(asio::socket_base::shutdown_both, gone);
    ended_.wait(lock, [this] { return connections_.empty(); });
}

void RawServer::acceptAll() {
    error_code error;
    for (tcp::socket socket = acceptor_.accept(error); !isEnding_; socket = acceptor_.accept(error)) {
        std::unique_ptr<Connection> connection(new Connection(std::move(socket), *this));
        const std::lock_guard lock(mutex_);
        connections_.insert(connection.get());
        mostConnections_ = std::max(mostConnections_, connections_.size());
        std::thread([this, connection = std::move(connection)]() mutable { run(std::move(connection)); }).detach();
    }
}

void RawServer::run(std::unique_ptr<Connection> connection) {
    error_code error;
    if (isSecure_)
        connection->stream_.handshake(asio::ssl::stream_base::server, error);
    if (!error)
        serve_(*connection);
    if (isSecure_)
        connection->stream_.shutdown(error);
    // Holds the lock to the end: once there are no connections, the server may be destroyed.
    const std::lock_guard lock(mutex_);
    connections_.erase(connection.get());
    connection.reset();
    ended_.notify_all();
}

std::string RawServer::url(const std::string& path) const {
    return (isSecure_ ? "https://localhost:" : "http://127.0.0.1:") + std::to_string(port()) + path;
}

unsigned RawServer::port() const {
    return acceptor_.local_endpoint().port();
}

std::string RawServer::received() const {
    const std::lock_guard lock(mutex_);
    return received_;
}

std::size_t RawServer::mostConnections() const {
    const std::lock_guard lock(mutex_);
    return mostConnections_;
}

namespace Serving {

std::string ok(const std::string& body) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
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
    while (!connection.readRequest().empty()) {
    }
}

} // namespace Serving

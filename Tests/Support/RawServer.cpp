#include "Tests/Support/RawServer.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/ssl.hpp>
#include <boost/asio/write.hpp>
#include <condition_variable>
#include <mutex>
#include <set>
#include <sys/socket.h>
#include <thread>

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;
using Context = asio::ssl::context;

struct RawServer::State {
    State(Serve each, bool secure) : serve(std::move(each)), isSecure(secure) {}

    const Serve serve;
    const bool isSecure;
    Context context{Context::tls_server};
    asio::io_context io;
    tcp::acceptor acceptor{io};
    tcp::socket waiting{io};
    mutable std::mutex mutex;
    std::condition_variable ended;
    std::set<Connection::Stream*> streams;
    std::size_t mostConnections = 0;
    std::string received;
};

// What is kept of a connection. Without TLS only the layer below is used.
struct RawServer::Connection::Stream {
    Stream(tcp::socket socket, State& owner) : tls(std::move(socket), owner.context), server(owner) {
        tls.next_layer().set_option(tcp::no_delay(true));
    }

    // Calls `operation` with the stream to read from and write to.
    template <class Operation>
    auto with(Operation operation) {
        return server.isSecure ? operation(tls) : operation(tls.next_layer());
    }

    asio::ssl::stream<tcp::socket> tls;
    State& server;
    bool isCut = false;
    bool isReset = false;
    std::string received;
};

std::string RawServer::Connection::readRequest() {
    error_code error;
    const auto buffer = asio::dynamic_buffer(stream_.received);
    const std::size_t size =
        stream_.with([&](auto& stream) { return asio::read_until(stream, buffer, "\r\n\r\n", error); });
    if (error)
        return {};
    std::string request = stream_.received.substr(0, size);
    stream_.received.erase(0, size);
    constexpr std::size_t enough = 4'000;
    const std::lock_guard lock(stream_.server.mutex);
    if (stream_.server.received.size() < enough)
        stream_.server.received += request;
    return request;
}

bool RawServer::Connection::send(std::string_view bytes) {
    error_code error;
    stream_.with([&](auto& stream) { return asio::write(stream, asio::buffer(bytes), error); });
    return !error;
}

void RawServer::Connection::reset() {
    stream_.tls.next_layer().set_option(asio::socket_base::linger(true, 0));
    stream_.isReset = true;
}

void RawServer::Connection::cut() {
    stream_.isCut = true;
}

bool RawServer::Connection::isResumed() {
    return SSL_session_reused(stream_.tls.native_handle()) == 1;
}

unsigned RawServer::Connection::port() const {
    return stream_.tls.next_layer().local_endpoint().port();
}

RawServer::RawServer(Serve serve, const Identity* identity)
    : state_(std::make_unique<State>(std::move(serve), identity != nullptr)) {
    if (identity) {
        SSL_CTX_set_max_proto_version(state_->context.native_handle(), identity->maxVersion);
        // Sessions go on by what the clients keep; a cache of them would grow.
        SSL_CTX_set_session_cache_mode(state_->context.native_handle(), SSL_SESS_CACHE_OFF);
        state_->context.use_certificate_chain_file(identity->certificate);
        state_->context.use_private_key_file(identity->key, Context::pem);
    }
    tcp::acceptor& acceptor = state_->acceptor;
    acceptor.open(tcp::v4());
    acceptor.bind({asio::ip::address_v4::loopback(), 0});
    acceptor.listen(state_->serve ? asio::socket_base::max_listen_connections : 0);
    if (state_->serve)
        thread_ = std::thread([this] { acceptAll(); });
    else
        state_->waiting.connect(acceptor.local_endpoint());
}

RawServer::~RawServer() {
    shutdown(state_->acceptor.native_handle(), SHUT_RDWR);
    if (thread_.joinable())
        thread_.join();
    std::unique_lock lock(state_->mutex);
    for (Connection::Stream* stream : state_->streams)
        shutdown(stream->tls.next_layer().native_handle(), SHUT_RDWR);
    state_->ended.wait(lock, [this] { return state_->streams.empty(); });
}

void RawServer::acceptAll() {
    error_code error;
    for (tcp::socket socket = state_->acceptor.accept(error); !error; socket = state_->acceptor.accept(error)) {
        auto stream = std::make_unique<Connection::Stream>(std::move(socket), *state_);
        const std::lock_guard lock(state_->mutex);
        state_->streams.insert(stream.get());
        state_->mostConnections = std::max(state_->mostConnections, state_->streams.size());
        std::thread([this, stream = std::move(stream)]() mutable { run(std::move(stream)); }).detach();
    }
}

void RawServer::run(std::unique_ptr<Connection::Stream> stream) {
    error_code error;
    if (state_->isSecure)
        stream->tls.handshake(asio::ssl::stream_base::server, error);
    if (!error) {
        Connection connection(*stream);
        state_->serve(connection);
    }
    if (state_->isSecure && !error && !stream->isCut)
        stream->tls.shutdown(error);
    // Under the lock to the end: without connections the server may be gone.
    const std::lock_guard lock(state_->mutex);
    state_->streams.erase(stream.get());
    // Its destructor would not let it linger, and so not reset it.
    if (stream->isReset)
        stream->tls.next_layer().close(error);
    stream.reset();
    state_->ended.notify_all();
}

std::string RawServer::url(const std::string& path) const {
    return (state_->isSecure ? "https://localhost:" : "http://127.0.0.1:") + std::to_string(port()) + path;
}

unsigned RawServer::port() const {
    return state_->acceptor.local_endpoint().port();
}

std::string RawServer::received() const {
    const std::lock_guard lock(state_->mutex);
    return state_->received;
}

std::size_t RawServer::mostConnections() const {
    const std::lock_guard lock(state_->mutex);
    return state_->mostConnections;
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

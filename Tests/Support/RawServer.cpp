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
#include <optional>
#include <set>
#include <sys/socket.h>
#include <thread>

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;
using Context = asio::ssl::context;

// What is kept of a connection. It has a context also where there is no TLS, so that there is something to make it of.
struct RawServer::Connection::Stream {
    Stream(tcp::socket socket, Context& context, bool secure, RawServer::Listener& owner)
        : tls(std::move(socket), context), isSecure(secure), listener(owner) {
        tls.next_layer().set_option(tcp::no_delay(true));
    }

    // Calls `operation` with the stream to read from and write to.
    template <class Operation>
    auto with(Operation operation) {
        return isSecure ? operation(tls) : operation(tls.next_layer());
    }

    asio::ssl::stream<tcp::socket> tls;
    const bool isSecure;
    RawServer::Listener& listener;
    bool isCut = false;
    bool isReset = false;
    std::string received;
};

class RawServer::Listener {
public:
    using Stream = Connection::Stream;

    Listener(Serve serve, const Identity* identity) : serve_(std::move(serve)), isSecure_(identity != nullptr) {
        if (identity) {
            SSL_CTX_set_max_proto_version(context_.native_handle(), identity->maxVersion);
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
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener() {
        shutdown(acceptor_.native_handle(), SHUT_RDWR);
        if (thread_.joinable())
            thread_.join();
        std::unique_lock lock(mutex_);
        for (Stream* stream : streams_)
            shutdown(stream->tls.next_layer().native_handle(), SHUT_RDWR);
        ended_.wait(lock, [this] { return streams_.empty(); });
    }

    std::string address() const { return isSecure_ ? "https://localhost:" : "http://127.0.0.1:"; }
    unsigned port() const { return acceptor_.local_endpoint().port(); }

    void keep(const std::string& request) {
        constexpr std::size_t enough = 100'000;
        const std::lock_guard lock(mutex_);
        if (received_.size() < enough)
            received_ += request;
    }

    std::string received() const {
        const std::lock_guard lock(mutex_);
        return received_;
    }

    std::size_t mostConnections() const {
        const std::lock_guard lock(mutex_);
        return mostConnections_;
    }

private:
    void acceptAll() {
        error_code error;
        for (tcp::socket socket = acceptor_.accept(error); !error; socket = acceptor_.accept(error)) {
            auto stream = std::make_unique<Stream>(std::move(socket), context_, isSecure_, *this);
            const std::lock_guard lock(mutex_);
            streams_.insert(stream.get());
            mostConnections_ = std::max(mostConnections_, streams_.size());
            std::thread([this, stream = std::move(stream)]() mutable { run(std::move(stream)); }).detach();
        }
    }

    void run(std::unique_ptr<Stream> stream) {
        error_code error;
        if (isSecure_)
            stream->tls.handshake(asio::ssl::stream_base::server, error);
        if (!error) {
            Connection connection(*stream);
            serve_(connection);
        }
        if (isSecure_ && !error && !stream->isCut)
            stream->tls.shutdown(error);
        // Under the lock to the end: without connections the server may be gone.
        const std::lock_guard lock(mutex_);
        streams_.erase(stream.get());
        // Its destructor would not let it linger, and so not reset it.
        if (stream->isReset)
            stream->tls.next_layer().close(error);
        stream.reset();
        ended_.notify_all();
    }

    const Serve serve_;
    const bool isSecure_;
    Context context_{Context::tls_server};
    asio::io_context io_;
    tcp::acceptor acceptor_{io_};
    tcp::socket waiting_{io_};
    mutable std::mutex mutex_;
    std::condition_variable ended_;
    std::set<Stream*> streams_;
    std::size_t mostConnections_ = 0;
    std::string received_;
    std::thread thread_;
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
    stream_.listener.keep(request);
    return request;
}

bool RawServer::Connection::send(std::string_view bytes) {
    error_code error;
    stream_.with([&](auto& stream) { return asio::write(stream, asio::buffer(bytes), error); });
    return !error;
}

void RawServer::Connection::waitUntilClosed() {
    while (!readRequest().empty()) {
    }
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

unsigned RawServer::Connection::clientPort() const {
    return stream_.tls.next_layer().remote_endpoint().port();
}

RawServer::RawServer(Serve serve) : listener_(std::make_unique<Listener>(std::move(serve), nullptr)) {}

RawServer::RawServer(Serve serve, const Identity& identity)
    : listener_(std::make_unique<Listener>(std::move(serve), &identity)) {}

RawServer::~RawServer() = default;

std::string RawServer::url(const std::string& path) const {
    return listener_->address() + std::to_string(port()) + path;
}

unsigned RawServer::port() const {
    return listener_->port();
}

std::string RawServer::received() const {
    return listener_->received();
}

std::size_t RawServer::mostConnections() const {
    return listener_->mostConnections();
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
    connection.waitUntilClosed();
}

} // namespace Serving

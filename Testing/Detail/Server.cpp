#include "Testing/Detail/Server.h"

#include "Base/QxBaseCore10/Strings.h"
#include "Testing/Detail/Listening.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http.hpp>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <chrono>
#include <exception>
#include <list>
#include <new>
#include <system_error>
#include <thread>
#include <utility>

namespace Orvane::Testing::Detail {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using asio::ip::tcp;
using boost::system::error_code;
using Qx::HTTPResponse;
using namespace std::chrono_literals;

using Parser = http::request_parser<http::string_body>;

constexpr std::size_t maxTargetBytes = std::size_t{64} << 10;
constexpr std::uint32_t maxHeaderBytes = 65'000; // The parser can't handle fields beyond 16 bits.
constexpr std::uint64_t maxBodyBytes = std::uint64_t{1} << 20;
constexpr auto requestTime = 10s;
constexpr auto responseTime = 5min;

// Whether a header describes the connection over which the response came, rather than the response
// itself.
bool belongsToConnection(std::string_view name) {
    constexpr std::array names{"Connection", "Content-Encoding", "Content-Length",   "Date",
                               "Keep-Alive", "Trailer",          "Transfer-Encoding"};
    return std::any_of(names.begin(), names.end(), [&](const char* known) { return beast::iequals(name, known); });
}

bool isSendable(std::string_view name, std::string_view value) {
    const auto isControl = [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; };
    constexpr std::size_t maxBytes = 65'000; // The limit for a field of a message that is sent.
    return !name.empty() && name.size() + value.size() < maxBytes &&
           name.find_first_of(" :\t") == std::string_view::npos && std::none_of(name.begin(), name.end(), isControl) &&
           std::none_of(value.begin(), value.end(), isControl);
}

// Whether the client has disconnected or takes too long, so that it gets no response.
bool hasGone(error_code error) {
    return error == http::error::end_of_stream || error == http::error::partial_message ||
           (error && error.category() != http::make_error_code(http::error::bad_version).category());
}

// Returns the response that refuses a request, of which only a part may have arrived; its status is
// 0 if nothing is wrong.
HTTPResponse refusalOf(const Parser& parser, error_code error) {
    const auto& request = parser.get();
    const http::verb method = request.method();
    if (error == http::error::body_limit)
        return errorResponse(413, "Too large", "The body of a request must not exceed 1 MiB.");
    if (request.target().size() > maxTargetBytes || (error == http::error::header_limit && request.target().empty()))
        return errorResponse(414, "URI too long", "The path and query of a request must not exceed 64 KiB.");
    if (error == http::error::header_limit)
        return errorResponse(431, "Header too large", "The header of a request must not exceed 65,000 bytes.");
    if (error)
        return errorResponse(400, "Bad request", "This is not an HTTP/1.1 request.");
    if (method == http::verb::get || method == http::verb::head || method == http::verb::post)
        return HTTPResponse();
    return errorResponse(405, "Method not allowed", "The service accepts only GET, HEAD and POST.",
                         {{"Allow", "GET, HEAD, POST"}});
}

} // namespace

class Server::Loop {
public:
    Loop(Handler handler, int port);
    ~Loop();

    int port() const { return acceptor_.local_endpoint().port(); }

private:
    struct Connection {
        explicit Connection(tcp::socket socket) : stream(std::move(socket)) {}

        beast::tcp_stream stream;
        bool isAnswering = false;
    };

    void accept();
    void run();
    void closeIdle();
    asio::awaitable<void> acceptAll();
    void tryToStart(tcp::socket socket) noexcept;
    void start(tcp::socket socket);
    asio::awaitable<void> serve(Connection& connection);
    asio::awaitable<bool> answerNext(Connection& connection, beast::flat_buffer& buffer);
    HTTPResponse answerTo(const http::request<http::string_body>& request) const;
    static asio::awaitable<void> send(beast::tcp_stream& stream, const HTTPResponse& response, bool isHead,
                                      bool isLast);
    void stop();

    const Handler handler_;
    asio::io_context context_{1};
    tcp::acceptor acceptor_;
    asio::steady_timer deadline_{context_};
    std::list<Connection> connections_;
    bool isAccepting_ = false;
    std::atomic<bool> isStopping_ = false;
    std::thread thread_;
};

Server::Loop::Loop(Handler handler, int port) : handler_(std::move(handler)), acceptor_(listenOn(context_, port)) {
    accept();
    thread_ = std::thread([this] { run(); });
}

Server::Loop::~Loop() {
    try {
        asio::post(context_, [this] { stop(); });
    } catch (const std::bad_alloc&) {
        isStopping_ = true;
        context_.stop();
    }
    thread_.join();
}

void Server::Loop::accept() {
    asio::co_spawn(context_, acceptAll(), [this](const std::exception_ptr&) { isAccepting_ = false; });
    isAccepting_ = true;
}

// Keeps serving when memory runs out: only connections that needed memory, or are not being
// answered at that moment, are closed.
void Server::Loop::run() {
    for (bool hasEnded = false; !hasEnded;) {
        try {
            if (!isAccepting_ && !isStopping_)
                accept();
            context_.run();
            hasEnded = isStopping_;
        } catch (const std::exception&) {
            closeIdle();
        }
        if (!hasEnded) {
            std::this_thread::sleep_for(50ms);
            context_.restart();
        }
    }
}

void Server::Loop::closeIdle() {
    for (Connection& connection : connections_)
        if (!connection.isAnswering)
            connection.stream.close();
}

void Server::Loop::stop() {
    isStopping_ = true;
    acceptor_.close();
    closeIdle();
    deadline_.expires_after(1s);
    deadline_.async_wait([this](error_code) { context_.stop(); });
    if (connections_.empty())
        deadline_.cancel();
}

asio::awaitable<void> Server::Loop::acceptAll() {
    asio::steady_timer pause(context_);
    while (!isStopping_) {
        error_code error;
        tcp::socket socket = co_await acceptor_.async_accept(asio::redirect_error(asio::use_awaitable, error));
        if (!error) {
            tryToStart(std::move(socket));
        } else if (!isStopping_) { // If descriptors have run out, some may soon be free again.
            pause.expires_after(50ms);
            co_await pause.async_wait(asio::redirect_error(asio::use_awaitable, error));
        }
    }
}

void Server::Loop::tryToStart(tcp::socket socket) noexcept {
    try {
        start(std::move(socket));
    } catch (const std::exception&) {
        // Only this connection is lost; there may be memory for the next one.
    }
}

void Server::Loop::start(tcp::socket socket) {
    error_code error;
    socket.set_option(tcp::no_delay(true), error);
    const auto connection = connections_.emplace(connections_.end(), std::move(socket));
    const auto end = [this, connection](const std::exception_ptr&) {
        connections_.erase(connection);
        if (isStopping_ && connections_.empty())
            deadline_.cancel();
    };
    try {
        asio::co_spawn(context_, serve(*connection), end);
    } catch (const std::exception&) {
        end(nullptr);
    }
}

asio::awaitable<void> Server::Loop::serve(Connection& connection) {
    beast::flat_buffer buffer;
    while (co_await answerNext(connection, buffer) && !isStopping_)
        connection.isAnswering = false;
    // Reads what the client still sends, since closing the connection earlier could make the client
    // lose the response.
    error_code error;
    connection.stream.socket().shutdown(tcp::socket::shutdown_send, error);
    connection.stream.expires_after(1s);
    buffer.clear();
    while (!error)
        co_await connection.stream.async_read_some(buffer.prepare(std::size_t{64} << 10),
                                                   asio::redirect_error(asio::use_awaitable, error));
}

// Answers one request and returns whether another may follow.
asio::awaitable<bool> Server::Loop::answerNext(Connection& connection, beast::flat_buffer& buffer) {
    Parser parser;
    parser.header_limit(maxHeaderBytes);
    parser.body_limit(maxBodyBytes);
    connection.stream.expires_after(requestTime);
    error_code error;
    co_await http::async_read_header(connection.stream, buffer, parser,
                                     asio::redirect_error(asio::use_awaitable, error));
    HTTPResponse refusal = refusalOf(parser, error);
    if (!error && refusal.getStatus() == 0) {
        if (beast::iequals(parser.get()[http::field::expect], "100-continue"))
            co_await asio::async_write(connection.stream,
                                       asio::buffer(std::string_view("HTTP/1.1 100 Continue\r\n\r\n")),
                                       asio::redirect_error(asio::use_awaitable, error));
        co_await http::async_read(connection.stream, buffer, parser, asio::redirect_error(asio::use_awaitable, error));
        refusal = refusalOf(parser, error);
    }
    if (hasGone(error))
        co_return false;
    connection.isAnswering = true;
    connection.stream.expires_after(responseTime);
    const bool isRefused = refusal.getStatus() != 0;
    const HTTPResponse response = isRefused ? refusal : answerTo(parser.get());
    const bool isLast = isRefused || isStopping_ || !parser.get().keep_alive();
    co_await send(connection.stream, response, parser.get().method() == http::verb::head, isLast);
    co_return !isLast;
}

HTTPResponse Server::Loop::answerTo(const http::request<http::string_body>& request) const {
    const auto target = request.target();
    const auto authorization = request[http::field::authorization];
    HTTPResponse response = handler_({request.method() == http::verb::post,
                                      {target.data(), target.size()},
                                      {authorization.data(), authorization.size()}});
    if (response.getStatus() < 200 || response.getStatus() > 999)
        return errorResponse(502, "No response", response.getReason());
    return response;
}

// The body is not copied, since it may be large and go to many clients.
asio::awaitable<void> Server::Loop::send(beast::tcp_stream& stream, const HTTPResponse& response, bool isHead,
                                         bool isLast) {
    const int status = response.getStatus();
    const std::string_view body = response.getBody();
    http::response<http::span_body<const char>> message;
    message.result(static_cast<unsigned>(status));
    for (const auto& [name, value] : response.getHeaders())
        if (isSendable(name, value) && !belongsToConnection(name))
            message.insert(name, value);
    message.body() = {body.data(), body.size()};
    message.keep_alive(!isLast);
    if (status != 204)
        message.content_length(body.size());
    http::response_serializer<http::span_body<const char>> serializer(message);
    if (isHead || status == 204 || status == 304)
        co_await http::async_write_header(stream, serializer, asio::use_awaitable);
    else
        co_await http::async_write(stream, serializer, asio::use_awaitable);
}

Server::Server(Handler handler, int port) try : loop_(std::make_unique<Loop>(std::move(handler), port)) {
} catch (const boost::system::system_error& error) {
    throw std::system_error(error.code());
}

Server::~Server() = default;

int Server::port() const {
    return loop_->port();
}

HTTPResponse errorResponse(int status, std::string_view title, std::string_view detail, HTTPResponse::Headers headers) {
    // The detail may quote what the client requested, which need not be UTF-8; the body must be.
    const boost::json::value error = {
        {"status", std::to_string(status)}, {"title", title}, {"detail", Qx::ToHString(Qx::ToIString(detail))}};
    headers.emplace_back("Content-Type", "application/json; charset=utf-8");
    return HTTPResponse(status, boost::json::serialize(boost::json::object{{"errors", boost::json::array{error}}}),
                        std::move(headers));
}

} // namespace Orvane::Testing::Detail

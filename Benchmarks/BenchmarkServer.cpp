#include "Benchmarks/BenchmarkServer.h"

#include <boost/asio.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http.hpp>
#include <chrono>
#include <exception>
#include <fmt/format.h>
#include <sched.h>
#include <thread>
#include <unistd.h>

namespace OrvaneBenchmarks {

namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;

// Moves this thread to the other cores, so that the code under measurement has its core to itself.
void leaveCore(int core) {
    cpu_set_t others;
    CPU_ZERO(&others);
    for (long other = 0; other < sysconf(_SC_NPROCESSORS_ONLN); ++other)
        if (other != core)
            CPU_SET(static_cast<std::size_t>(other), &others);
    // With only one core this fails, and the server shares it.
    static_cast<void>(sched_setaffinity(0, sizeof(others), &others));
}

asio::awaitable<void> sendSmall(tcp::socket& socket) {
    http::response<http::string_body> response(http::status::ok, 11);
    response.body() = R"({"data":{"type":"folders","id":"urn:vrnk.dorlqa:fs.folder:small"},"included":{}})";
    response.prepare_payload();
    co_await http::async_write(socket, response, asio::use_awaitable);
}

// Holds back the last bytes, which contain the time at which they are sent, until the client must
// have read all the others.
asio::awaitable<void> sendLarge(tcp::socket& socket) {
    const std::string most =
        fmt::format("HTTP/1.1 200 OK\r\nContent-Length: {}\r\n\r\n{:x<{}}", BenchmarkServer::largeBodyBytes, "",
                    BenchmarkServer::largeBodyBytes - BenchmarkServer::timeDigits);
    co_await asio::async_write(socket, asio::buffer(most), asio::use_awaitable);
    asio::steady_timer timer(socket.get_executor(), std::chrono::milliseconds(100));
    co_await timer.async_wait(asio::use_awaitable);
    const std::chrono::nanoseconds now = std::chrono::steady_clock::now().time_since_epoch();
    const std::string time = fmt::format("{:0{}}", now.count(), BenchmarkServer::timeDigits);
    co_await asio::async_write(socket, asio::buffer(time), asio::use_awaitable);
}

asio::awaitable<void> serve(tcp::socket socket) {
    socket.set_option(tcp::no_delay(true));
    boost::beast::flat_buffer buffer;
    for (;;) {
        http::request<http::empty_body> request;
        co_await http::async_read(socket, buffer, request, asio::use_awaitable);
        if (request.target() == "/large")
            co_await sendLarge(socket);
        else
            co_await sendSmall(socket);
    }
}

asio::awaitable<void> acceptAll(tcp::acceptor& acceptor) {
    for (;;) {
        tcp::socket socket = co_await acceptor.async_accept(asio::use_awaitable);
        // An exception means that the client has closed the connection.
        asio::co_spawn(acceptor.get_executor(), serve(std::move(socket)), [](const std::exception_ptr&) {});
    }
}

} // namespace

class BenchmarkServer::Loop {
public:
    explicit Loop(int clientCore)
        : acceptor_(context_, {asio::ip::address_v4::loopback(), 0}),
          port_(acceptor_.local_endpoint().port()),
          thread_([this, clientCore] {
              leaveCore(clientCore);
              context_.run();
          }) {
        asio::co_spawn(context_, acceptAll(acceptor_), asio::detached);
    }

    ~Loop() {
        context_.stop();
        thread_.join();
    }

    unsigned port() const { return port_; }

private:
    asio::io_context context_{1};
    tcp::acceptor acceptor_;
    const unsigned port_;
    const asio::executor_work_guard<asio::io_context::executor_type> work_{context_.get_executor()};
    std::thread thread_;
};

BenchmarkServer::BenchmarkServer() : loop_(std::make_unique<Loop>(sched_getcpu())) {}

BenchmarkServer::~BenchmarkServer() = default;

std::string BenchmarkServer::smallAddress() const {
    return fmt::format("http://127.0.0.1:{}/small", loop_->port());
}

std::string BenchmarkServer::largeAddress() const {
    return fmt::format("http://127.0.0.1:{}/large", loop_->port());
}

} // namespace OrvaneBenchmarks

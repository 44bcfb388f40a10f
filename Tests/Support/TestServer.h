#pragma once

#include <functional>
#include <httplib.h>
#include <memory>
#include <string>
#include <thread>
#include <utility>

/// An HTTP server on a loopback port that answers every GET and POST with `handler`.
class TestServer {
public:
    using Handler = std::function<void(const httplib::Request&, httplib::Response&)>;

    explicit TestServer(Handler handler) : TestServer(std::move(handler), std::make_unique<httplib::Server>()) {}

    /// With a server of one's own, such as one for https.
    TestServer(Handler handler, std::unique_ptr<httplib::Server> server) : server_(std::move(server)) {
        server_->new_task_queue = [] { return new httplib::ThreadPool(32); };
        server_->set_tcp_nodelay(true);
        server_->set_keep_alive_timeout(1); // Seconds; stopping waits for idle connections.
        server_->Get(".*", handler);
        server_->Post(".*", handler);
        port_ = server_->bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_->listen_after_bind(); });
        while (!server_->is_running())
            std::this_thread::yield();
    }
    TestServer(const TestServer&) = delete;
    TestServer& operator=(const TestServer&) = delete;
    ~TestServer() {
        server_->stop();
        thread_.join();
    }

    int port() const { return port_; }
    std::string url(const std::string& path) const { return "http://127.0.0.1:" + std::to_string(port_) + path; }

private:
    const std::unique_ptr<httplib::Server> server_;
    int port_ = 0;
    std::thread thread_;
};

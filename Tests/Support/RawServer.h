#pragma once

#include <arpa/inet.h>
#include <functional>
#include <netinet/in.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <utility>

/// A loopback port whose connections get raw bytes, or nothing: for what a well-behaved server can't do.
/// `serve` runs with each connection in turn, which is closed behind it; without `serve` nobody accepts, and
/// with one connection waiting the next can't even be made.
class RawServer {
public:
    using Serve = std::function<void(int connection)>;

    explicit RawServer(Serve serve) : listener_(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        static_cast<void>(bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address));
        listen(listener_, 0);
        socklen_t length = sizeof address;
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
        port_ = ntohs(address.sin_port);
        if (serve)
            thread_ = std::thread([this, serve = std::move(serve)] { run(serve); });
    }
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;
    ~RawServer() {
        shutdown(listener_, SHUT_RDWR);
        if (thread_.joinable())
            thread_.join();
        close(listener_);
    }

    std::string url(const std::string& path) const { return "http://127.0.0.1:" + std::to_string(port_) + path; }

    /// Reads the request, then sends `bytes`.
    static Serve answering(std::string bytes) {
        return [bytes = std::move(bytes)](int connection) {
            readRequest(connection);
            send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        };
    }

    /// Reads the request, then says nothing until the client goes away.
    static Serve silent() {
        return [](int connection) {
            readRequest(connection);
            readRequest(connection);
        };
    }

private:
    static void readRequest(int connection) {
        char buffer[4096];
        [[maybe_unused]] const auto count = recv(connection, buffer, sizeof buffer, 0);
    }

    void run(const Serve& serve) const {
        for (int connection = accept(listener_, nullptr, nullptr); connection >= 0;
             connection = accept(listener_, nullptr, nullptr)) {
            serve(connection);
            close(connection);
        }
    }

    const int listener_;
    int port_ = 0;
    std::thread thread_;
};

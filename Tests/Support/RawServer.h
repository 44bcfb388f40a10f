#pragma once

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <netinet/in.h>
#include <set>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <utility>

/// A loopback port whose connections get raw bytes, or nothing: for what a well-behaved server can't do. `serve` runs
/// with each connection on a thread of its own; the connection is closed behind it. Without `serve` nobody accepts, and
/// with one connection waiting the next can't even be made.
class RawServer {
public:
    class Connection {
    public:
        Connection(int socket, RawServer& server) : socket_(socket), server_(server) {}

        /// The next request up to the empty line, as it came; empty if the client has gone.
        std::string readRequest() const {
            std::string request;
            std::array<char, 4096> buffer{};
            while (!request.ends_with("\r\n\r\n")) {
                const auto count = recv(socket_, buffer.data(), buffer.size(), 0);
                if (count <= 0)
                    return {};
                request.append(buffer.data(), static_cast<std::size_t>(count));
            }
            server_.keep(request);
            return request;
        }

        /// False once the client has gone.
        bool send(std::string_view bytes) const {
            while (!bytes.empty()) {
                const auto count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
                if (count <= 0)
                    return false;
                bytes.remove_prefix(static_cast<std::size_t>(count));
            }
            return true;
        }

        void waitUntilClosed() const {
            while (!readRequest().empty()) {
            }
        }

        /// Lets the connection end with a reset instead of an orderly close.
        void reset() const {
            const linger now{1, 0};
            setsockopt(socket_, SOL_SOCKET, SO_LINGER, &now, sizeof now);
        }

    private:
        const int socket_;
        RawServer& server_;
    };

    using Serve = std::function<void(const Connection&)>;

    explicit RawServer(Serve serve) : serve_(std::move(serve)), listener_(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        static_cast<void>(bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address));
        listen(listener_, serve_ ? SOMAXCONN : 0);
        socklen_t length = sizeof address;
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length);
        port_ = ntohs(address.sin_port);
        if (serve_)
            acceptor_ = std::thread([this] { acceptAll(); });
    }
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;
    ~RawServer() {
        shutdown(listener_, SHUT_RDWR);
        if (acceptor_.joinable())
            acceptor_.join();
        close(listener_);
        std::unique_lock lock(mutex_);
        for (const int connection : connections_)
            shutdown(connection, SHUT_RDWR);
        connectionEnded_.wait(lock, [this] { return connections_.empty(); });
    }

    std::string url(const std::string& path) const { return "http://127.0.0.1:" + std::to_string(port_) + path; }

    /// The first requests that have come, as they came.
    std::string received() const {
        const std::lock_guard lock(mutex_);
        return received_;
    }

    /// How many connections were open at most at the same time.
    std::size_t mostConnections() const {
        const std::lock_guard lock(mutex_);
        return mostConnections_;
    }

    /// Reads the request, then sends `bytes`.
    static Serve answering(std::string bytes) {
        return [bytes = std::move(bytes)](const Connection& connection) {
            connection.readRequest();
            connection.send(bytes);
        };
    }

    /// Says nothing until the client goes away.
    static void stayingSilent(const Connection& connection) { connection.waitUntilClosed(); }

private:
    void acceptAll() {
        for (int connection = accept(listener_, nullptr, nullptr); connection >= 0;
             connection = accept(listener_, nullptr, nullptr)) {
            const std::lock_guard lock(mutex_);
            connections_.insert(connection);
            mostConnections_ = std::max(mostConnections_, connections_.size());
            std::thread([this, connection] { run(connection); }).detach();
        }
    }

    void run(int connection) {
        serve_(Connection(connection, *this));
        // Under the lock to the end: without connections the server may be gone.
        const std::lock_guard lock(mutex_);
        close(connection);
        connections_.erase(connection);
        connectionEnded_.notify_all();
    }

    void keep(const std::string& request) {
        constexpr std::size_t enough = 100'000;
        const std::lock_guard lock(mutex_);
        if (received_.size() < enough)
            received_ += request;
    }

    const Serve serve_;
    const int listener_;
    int port_ = 0;
    mutable std::mutex mutex_;
    std::condition_variable connectionEnded_;
    std::set<int> connections_;
    std::size_t mostConnections_ = 0;
    std::string received_;
    std::thread acceptor_;
};

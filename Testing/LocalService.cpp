#include "Testing/LocalService.h"

#include "Base/QxBaseCore10/Strings.h"
#include "Testing/Detail/Workers.h"

#include <algorithm>
#include <array>
#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>
#include <fmt/format.h>
#include <httplib.h>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace Orvane::Testing {

namespace {

constexpr const char* host = "127.0.0.1";
// With the bare type the server would compress: with brotli, at a level that takes seconds for a megabyte.
constexpr const char* jsonType = "application/json; charset=utf-8";

// A connection that is kept alive holds a thread, so there have to be more than clients keep open.
constexpr std::size_t workerThreads = 32;

// A body such as the service sends with an error.
void answerError(httplib::Response& response, int status, const char* title, const std::string& detail) {
    // The detail may name what a client asked for, which need not be UTF-8; the body has to be.
    const boost::json::value error = {
        {"status", std::to_string(status)}, {"title", title}, {"detail", Qx::ToHString(Qx::ToIString(detail))}};
    response.status = status;
    response.set_content(boost::json::serialize(boost::json::object{{"errors", boost::json::array{error}}}), jsonType);
}

// What belongs to the connection over which a response came, not to the response.
bool belongsToConnection(const std::string& name) {
    constexpr std::array names{"Connection", "Content-Encoding", "Content-Length", "Content-Type",
                               "Date",       "Keep-Alive",       "Trailer",        "Transfer-Encoding"};
    return std::any_of(names.begin(), names.end(), [&](const char* known) {
        return Qx::HTTPResponse(200, "", {{name, ""}}).getHeader(known).has_value();
    });
}

bool hasBody(const httplib::Request& request) {
    return request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
}

} // namespace

LocalService::LocalService(PreparedAnswers answers, std::string token, int port)
    : answers_(std::move(answers)), token_(std::move(token)), server_(std::make_unique<httplib::Server>()) {
    server_->new_task_queue = [this] { return workers_.release(); };
    server_->set_keep_alive_max_count(1'000'000);
    server_->set_keep_alive_timeout(1); // Seconds; stopping waits for idle connections.
    server_->set_payload_max_length(std::size_t{1} << 20);
    server_->set_tcp_nodelay(true);
    // By default two servers could share a port, each with a part of the requests.
    server_->set_socket_options([](socket_t socket) {
        const int on = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    });

    // No routes, since the server matches them with regular expressions that recurse. Without them a request is
    // answered before its body is read, if it has none (a POST without a length would be waited for), or as one that
    // matches none.
    server_->set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
        if (hasBody(request))
            return httplib::Server::HandlerResponse::Unhandled;
        answer(request, response);
        return httplib::Server::HandlerResponse::Handled;
    });
    server_->set_error_handler([this](const httplib::Request& request, httplib::Response& response) {
        if (response.status == 404 && hasBody(request))
            answer(request, response);
        else if (response.body.empty())
            answerError(response, response.status, "Refused", "The service takes no such request.");
    });

    try {
        start(port);
    } catch (const std::system_error&) {
        throw std::runtime_error("can't start the threads of the local service; end other programs, or allow more");
    }
    if (port_ < 0)
        throw std::runtime_error(fmt::format("can't listen on port {} of {}; choose another with --port", port, host));
}

void LocalService::start(int port) {
    workers_ = std::make_unique<Detail::Workers>(workerThreads);
    thread_ = std::thread([this, port] { listen(port); });
    // Only a server that runs can be stopped.
    while (port_ >= 0 && !server_->is_running())
        std::this_thread::yield();
    if (port_ < 0)
        thread_.join();
}

void LocalService::listen(int port) {
    const int bound = port == 0 ? server_->bind_to_any_port(host) : (server_->bind_to_port(host, port) ? port : -1);
    port_ = bound;
    if (bound > 0)
        server_->listen_after_bind();
}

LocalService::~LocalService() {
    server_->stop();
    thread_.join();
}

int LocalService::port() const {
    return port_;
}

std::string LocalService::baseUri() const {
    return fmt::format("http://{}:{}/orvanedm", host, port_);
}

std::string LocalService::baseUriV3() const {
    return baseUri() + "/v3";
}

void LocalService::answer(const httplib::Request& request, httplib::Response& response) const {
    using Method = Qx::HTTPRequest::Method;
    if (!isAuthorized(request)) {
        response.set_header("WWW-Authenticate", "Bearer");
        answerError(response, 401, "Unauthorized", "The request needs the right bearer token.");
        return;
    }
    const bool isPost = request.method == "POST";
    if (!isPost && request.method != "GET" && request.method != "HEAD") {
        response.set_header("Allow", "GET, HEAD, POST");
        answerError(response, 405, "Method not allowed", "The service takes no " + request.method + ".");
        return;
    }
    const auto prepared = answers_.find(isPost ? Method::POST : Method::GET, request.target);
    if (!prepared) {
        answerError(response, 404, "Not found", "The service has nothing under " + request.target + " here.");
        return;
    }
    if (prepared->getStatus() == 0) {
        answerError(response, 502, "No response", prepared->getReason());
        return;
    }
    response.status = prepared->getStatus();
    for (const auto& [name, value] : prepared->getHeaders())
        if (!belongsToConnection(name))
            response.headers.emplace(name, value);
    response.set_content(std::string(prepared->getBody()), prepared->getHeader("Content-Type").value_or(jsonType));
}

bool LocalService::isAuthorized(const httplib::Request& request) const {
    return request.get_header_value("Authorization") == "Bearer " + token_;
}

} // namespace Orvane::Testing

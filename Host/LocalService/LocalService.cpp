#include "Host/LocalService/LocalService.h"

#include "Host/LocalService/Workers.h"

#include <fmt/format.h>
#include <httplib.h>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace OrvaneHost {

namespace {

constexpr const char* host = "127.0.0.1";
// With the bare type the server would compress: with brotli, at a level that takes seconds for a megabyte.
constexpr const char* jsonType = "application/json; charset=utf-8";

// A connection that is kept alive holds a thread, so there have to be more than clients keep open.
constexpr std::size_t workerThreads = 32;

void answerError(httplib::Response& response, int status, const char* title, const char* detail) {
    response.status = status;
    response.set_content(ServiceData::errorBody(status, title, detail), jsonType);
}

} // namespace

LocalService::LocalService(ServiceData data, std::string token, int port)
    : data_(std::move(data)), token_(std::move(token)), server_(std::make_unique<httplib::Server>()) {
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

    server_->Get("/orvanedm/folders/(.*)/content", answerFrom(ServiceData::Address::FOLDER_CONTENTS));
    server_->Get("/orvanedm/v3/versions/(.*)/fullassembly", answerFrom(ServiceData::Address::FULL_ASSEMBLY));
    answerAccess();
    server_->set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty())
            answerError(response, response.status, "Refused",
                        "The service has no such address, or takes no such request.");
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
    workers_ = std::make_unique<Workers>(workerThreads);
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

LocalService::Handler LocalService::answerFrom(ServiceData::Address address) const {
    return [this, address](const httplib::Request& request, httplib::Response& response) {
        answer(request, response, address, request.matches[1].str());
    };
}

// A POST without a length has no body, but the server would wait for one: it has to be answered ahead of that.
void LocalService::answerAccess() {
    const std::string start = "/orvanedm/versions/";
    const std::string end = "/fullassembly/access";
    constexpr auto address = ServiceData::Address::FULL_ASSEMBLY_ACCESS;
    server_->Post(start + "(.*)" + end, answerFrom(address));
    server_->set_pre_routing_handler([this, start, end](const httplib::Request& request, httplib::Response& response) {
        const std::string& path = request.path;
        const bool isAccess =
            path.size() >= start.size() + end.size() && path.starts_with(start) && path.ends_with(end);
        const bool hasBody = request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
        if (request.method != "POST" || hasBody || !isAccess)
            return httplib::Server::HandlerResponse::Unhandled;
        answer(request, response, address, path.substr(start.size(), path.size() - start.size() - end.size()));
        return httplib::Server::HandlerResponse::Handled;
    });
}

void LocalService::answer(const httplib::Request& request, httplib::Response& response, ServiceData::Address address,
                          const std::string& urn) const {
    if (!isAuthorized(request)) {
        response.set_header("WWW-Authenticate", "Bearer");
        answerError(response, 401, "Unauthorized", "The request needs the right bearer token.");
        return;
    }
    const ServiceData::Answer found = data_.find(address, urn);
    response.status = found.status;
    response.set_content(found.body, jsonType);
}

bool LocalService::isAuthorized(const httplib::Request& request) const {
    return request.get_header_value("Authorization") == "Bearer " + token_;
}

} // namespace OrvaneHost

#pragma once

#include "Host/LocalService/ServiceData.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace httplib {
class Server;
struct Request;
struct Response;
} // namespace httplib

namespace OrvaneHost {

class Workers;

/// The Orvane service in small, on a loopback port, over HTTP/1.1 with keep-alive:
///
///     GET  /orvanedm/folders/{folder URN}/content
///     GET  /orvanedm/v3/versions/{version URN}/fullassembly
///     POST /orvanedm/versions/{version URN}/fullassembly/access
///
/// It answers 401 without the right bearer token and 404 for what it does not know, with a JSON body.
class LocalService {
public:
    /// Starts to serve, from threads of its own. `port` 0 takes any free port. Throws `std::runtime_error`
    /// with a message of one line if the port is not free or the threads can't be started.
    LocalService(ServiceData data, std::string token, int port);
    LocalService(const LocalService&) = delete;
    LocalService& operator=(const LocalService&) = delete;

    /// Waits for the requests that are being answered, and up to a second for idle connections, and stops.
    ~LocalService();

    int port() const;

    /// What the options "orvaneServiceUrl" and "orvaneV3ServiceUrl" are to hold.
    std::string baseUri() const;
    std::string baseUriV3() const;

private:
    using Handler = std::function<void(const httplib::Request& request, httplib::Response& response)>;

    Handler answerFrom(ServiceData::Address address) const;
    void answerAccess();
    void answer(const httplib::Request& request, httplib::Response& response, ServiceData::Address address,
                const std::string& urn) const;
    bool isAuthorized(const httplib::Request& request) const;
    void start(int port);
    void listen(int port);

    const ServiceData data_;
    const std::string token_;
    const std::unique_ptr<httplib::Server> server_;
    std::unique_ptr<Workers> workers_; // Until the server takes them.
    std::atomic<int> port_ = 0;        // Below 0 if it is not free.
    std::thread thread_;
};

} // namespace OrvaneHost

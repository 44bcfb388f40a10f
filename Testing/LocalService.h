#pragma once

#include "Testing/PreparedAnswers.h"

#include <atomic>
#include <memory>
#include <string>
#include <thread>

namespace httplib {
class Server;
struct Request;
struct Response;
} // namespace httplib

namespace Orvane::Testing {

namespace Detail {
class Workers;
}

/// A stand-in for the Orvane service, on a loopback port, over HTTP/1.1 with keep-alive:
///
///     GET  /orvanedm/folders/{folder URN}/content
///     GET  /orvanedm/v3/versions/{version URN}/fullassembly
///     POST /orvanedm/versions/{version URN}/fullassembly/access
///
/// It gives prepared answers, each with its status and headers. A prepared transport failure becomes a response of
/// status 502. Without the right bearer token it answers 401, and 404 if nothing is prepared, with a JSON body.
class LocalService {
public:
    /// Starts to serve, from threads of its own. `port` 0 takes any free port. Throws `std::runtime_error`
    /// with a message of one line if the port is not free or the threads can't be started.
    LocalService(PreparedAnswers answers, std::string token, int port);
    LocalService(const LocalService&) = delete;
    LocalService& operator=(const LocalService&) = delete;

    /// Waits for the requests that are being answered, and up to a second for idle connections, and stops.
    ~LocalService();

    int port() const;

    /// What the options "orvaneServiceUrl" and "orvaneV3ServiceUrl" are to hold.
    std::string baseUri() const;
    std::string baseUriV3() const;

private:
    void answer(const httplib::Request& request, httplib::Response& response) const;
    bool isAuthorized(const httplib::Request& request) const;
    void start(int port);
    void listen(int port);

    const PreparedAnswers answers_;
    const std::string token_;
    const std::unique_ptr<httplib::Server> server_;
    std::unique_ptr<Detail::Workers> workers_; // Until the server takes them.
    std::atomic<int> port_ = 0;                // Below 0 if it is not free.
    std::thread thread_;
};

} // namespace Orvane::Testing

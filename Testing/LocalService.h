#pragma once

#include "Testing/PreparedAnswers.h"

#include <memory>
#include <string>

namespace Orvane::Testing {

namespace Detail {
class Server;
}

/// A stand-in for the Orvane service, on a loopback port, over HTTP/1.1 with keep-alive:
///
///     GET  /orvanedm/folders/{folder URN}/content
///     GET  /orvanedm/v3/versions/{version URN}/fullassembly
///     POST /orvanedm/versions/{version URN}/fullassembly/access
///
/// It gives prepared answers, each with its status and headers, also to HEAD instead of GET. A prepared transport
/// failure becomes a response of status 502. Without the right bearer token it answers 401, and 404 if nothing is
/// prepared, with a JSON body. It answers from one thread of its own, and needs no copy of a body to send it.
class LocalService {
public:
    /// Starts to serve. `port` 0 takes any free port. Throws `std::runtime_error` with a message of one line if the
    /// port is not free or the thread can't be started.
    LocalService(PreparedAnswers answers, const std::string& token, int port);
    LocalService(const LocalService&) = delete;
    LocalService& operator=(const LocalService&) = delete;

    /// Waits up to a second for the answers that are being sent, and stops.
    ~LocalService();

    int port() const;

    /// What the options "orvaneServiceUrl" and "orvaneV3ServiceUrl" are to hold.
    std::string baseUri() const;
    std::string baseUriV3() const;

private:
    std::unique_ptr<Detail::Server> server_;
};

} // namespace Orvane::Testing

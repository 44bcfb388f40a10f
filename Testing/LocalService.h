#pragma once

#include "Testing/PreparedAnswers.h"

#include <memory>
#include <string>

namespace Orvane::Testing {

namespace Detail {
class Server;
}

/// A stand-in for the Orvane service, on a loopback port, over HTTP/1.1 with keep-alive. It serves:
///
///     GET  /orvanedm/folders/{folder URN}/content
///     GET  /orvanedm/v3/versions/{version URN}/fullassembly
///     POST /orvanedm/versions/{version URN}/fullassembly/access
///
/// It sends prepared answers, each with its status and headers; HEAD is answered like GET, without
/// the body. A prepared transport failure becomes a 502. A request without the right bearer token
/// gets a 401, and one for which nothing is prepared a 404, both with a JSON body. The service runs
/// on a single thread of its own, and sends bodies without copying them.
class LocalService {
public:
    /// Starts serving. `port` 0 takes any free port. Throws `std::runtime_error` with a one-line
    /// message if the port is not free or the thread can't be started.
    LocalService(PreparedAnswers answers, const std::string& token, int port);
    LocalService(const LocalService&) = delete;
    LocalService& operator=(const LocalService&) = delete;

    /// Waits up to a second for answers that are being sent, then stops.
    ~LocalService();

    /// The port that it listens on.
    int port() const;

    /// The value for the option "orvaneServiceUrl".
    std::string baseUri() const;

    /// The value for the option "orvaneV3ServiceUrl".
    std::string baseUriV3() const;

private:
    std::unique_ptr<Detail::Server> server_;
};

} // namespace Orvane::Testing

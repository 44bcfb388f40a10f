#pragma once

#include "Base/QxBase10/HTTPResponse.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace Orvane::Testing::Detail {

/// Serves HTTP/1.1 on a loopback port, on one thread of its own; no client can hold up another.
///
/// A complete request must arrive within ten seconds. A request that is not HTTP, is too long, or
/// has a method other than GET, HEAD and POST is refused without calling the handler.
class Server {
public:
    struct Request {
        bool isPost = false;            ///< Otherwise GET, or HEAD, which gets no body.
        std::string_view target;        ///< The path and the query.
        std::string_view authorization; ///< The value of the Authorization header.
    };

    /// Called on the server's thread. A transport failure, or a response with a status that is not
    /// between 200 and 999, is sent as a 502.
    using Handler = std::function<Qx::HTTPResponse(const Request& request)>;

    /// Starts serving. `port` 0 takes any free port. Throws `std::system_error` if the port is not
    /// free or the thread can't be started.
    Server(Handler handler, int port);
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// Waits up to a second for responses that are being sent.
    ~Server();

    int port() const;

private:
    class Loop;

    const std::unique_ptr<Loop> loop_;
};

/// Returns a response with a body like those that the service sends with errors.
Qx::HTTPResponse errorResponse(int status, std::string_view title, std::string_view detail,
                               Qx::HTTPResponse::Headers headers = {});

} // namespace Orvane::Testing::Detail

#pragma once

#include "Base/QxBase10/HTTPResponse.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace Orvane::Testing::Detail {

/// Serves HTTP/1.1 on a loopback port, on one thread of its own, so that no client can hold up another.
///
/// A request has to come within ten seconds as a whole. One that is no HTTP, too long, or of a method other than GET,
/// HEAD and POST is refused without asking the handler.
class Server {
public:
    struct Request {
        bool isPost = false;            ///< A HEAD is answered like a GET, without the body.
        std::string_view target;        ///< The path and the query.
        std::string_view authorization; ///< The header Authorization.
    };

    /// Called on the server's thread. A response that is no more than a transport failure, or of a status that none can
    /// have, is sent as a 502.
    using Handler = std::function<Qx::HTTPResponse(const Request& request)>;

    /// Serves from now on. `port` 0 takes any free port. Throws `std::system_error` if the port is not free, or there
    /// is no thread.
    Server(Handler handler, int port);
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// Waits up to a second for the answers that are being sent.
    ~Server();

    int port() const;

private:
    class Loop;

    const std::unique_ptr<Loop> loop_;
};

/// A response with a body such as the service sends with an error.
Qx::HTTPResponse errorResponse(int status, std::string_view title, std::string_view detail,
                               Qx::HTTPResponse::Headers headers = {});

} // namespace Orvane::Testing::Detail

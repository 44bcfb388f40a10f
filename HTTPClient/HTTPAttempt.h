#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace Qx {

/// One finished attempt to get a response, redirects included, for the application's log. It holds no token, no header
/// and no value of a query.
struct HTTPAttempt {
    HTTPRequest::Method method = HTTPRequest::Method::GET;

    /// Where the last exchange of the attempt went, without the values of the query's keys and without a fragment;
    /// after a redirect no more than scheme, host and port.
    std::string url;

    /// 1 for the first attempt of a request, 2 for the one after it, and so on.
    int number = 1;

    /// The status of the response, or 0 and why there is none.
    int status = 0;
    HTTPResponse::FailureKind failureKind = HTTPResponse::FailureKind::NONE;
    std::string reason;

    /// The bytes of the body as received, before they are decoded.
    std::uint64_t bytesReceived = 0;

    /// Measured from the start of the last exchange until the host's name was resolved, the connection was ready to
    /// use (TLS included), and the first byte of the response came; 0 if it did not get that far.
    std::chrono::microseconds nameResolved{0};
    std::chrono::microseconds connected{0};
    std::chrono::microseconds firstByte{0};

    /// Measured from the start of the attempt until its end.
    std::chrono::microseconds total{0};

    /// "HTTP/1.1" or "HTTP/2", for example; empty if no response came.
    std::string protocol;

    /// Whether the last exchange used a connection that was open already.
    bool isConnectionReused = false;
};

} // namespace Qx

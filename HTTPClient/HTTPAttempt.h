#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace Qx {

/// One finished attempt to get a response, including redirects, for the application's log. Contains
/// no token, no headers and no query values.
struct HTTPAttempt {
    /// The method of the attempt's last exchange: GET if a 303 has redirected a POST.
    HTTPRequest::Method method = HTTPRequest::Method::GET;

    /// The URL of the attempt's last exchange, with the keys but not the values of its query, and
    /// without a fragment; after a redirect, only scheme, host and port.
    std::string url;

    /// 1 for the first attempt of a request, 2 for the one after it, and so on.
    int number = 1;

    /// The status of the response; 0 if there is none.
    int status = 0;

    /// Why there is no response, as a kind that a program can act on.
    HTTPResponse::FailureKind failureKind = HTTPResponse::FailureKind::NONE;

    /// Why there is no response, as one line for people; empty if there is a response.
    std::string reason;

    /// The bytes of the body as received, before decoding.
    std::uint64_t bytesReceived = 0;

    /// Time from the start of the last exchange until the host name was resolved; 0 if it was not.
    std::chrono::microseconds nameResolved{0};

    /// Time from the same start until the connection was ready, including TLS; 0 if it was not.
    std::chrono::microseconds connected{0};

    /// Time from the same start until the first byte of the response arrived; 0 if none did.
    std::chrono::microseconds firstByte{0};

    /// Time from the start of the attempt to its end.
    std::chrono::microseconds total{0};

    /// "HTTP/1.1" or "HTTP/2", for example; empty if no response arrived.
    std::string protocol;

    /// Whether the last exchange reused an open connection.
    bool isConnectionReused = false;
};

} // namespace Qx

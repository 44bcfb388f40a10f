#pragma once

#include "Base/QxBase10/qxbase10_export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Qx {

/// The outcome of one request: a status, headers and a body, or the reason why there is no
/// response. A value whose copies share the headers and the body, which are immutable; may be read
/// from several threads at once.
class QXBASE10_EXPORT HTTPResponse {
public:
    /// The number of readable bytes after the body, which let the parser work on it without a copy.
    static constexpr std::size_t padding = 64;

    /// The name and value of each header, in the order received.
    using Headers = std::vector<std::pair<std::string, std::string>>;

    /// Why there is no response.
    enum class FailureKind : std::int32_t {
        NONE = 0,           ///< There is a response.
        REFUSED,            ///< The client refused to send the request or to follow a redirect.
        NETWORK,            ///< Unknown host, or a connection that fails, times out or breaks.
        TLS,                ///< No secure connection, for example because of a bad certificate.
        TIMEOUT,            ///< The response took longer than allowed.
        TOO_LARGE,          ///< The body is larger than allowed.
        MALFORMED_RESPONSE, ///< What arrived is not a valid HTTP response.
        CANCELLED,          ///< The application cancelled the request.
        CLOSED,             ///< The client was destroyed first, or belongs to the parent process.
        OUT_OF_MEMORY,      ///< Memory ran out during the request.
    };

    /// A transport failure of kind `NETWORK`, without a reason.
    HTTPResponse() = default;

    /// A response from the service. Takes over `body` without a copy if its capacity has room for
    /// `padding` more bytes.
    HTTPResponse(int status, std::string body, Headers headers = {});

    /// Returns a failure without a response: status 0, no body, no headers, and a one-line reason.
    static HTTPResponse transportFailure(FailureKind kind, std::string reason);

    /// Returns true for a status of 200 to 299.
    bool isSuccessful() const;

    /// The HTTP status, or 0 for a transport failure.
    int getStatus() const;

    /// The decoded body. Valid as long as this response or a copy of it exists.
    std::string_view getBody() const;

    /// The headers of the response, without those of any redirects before it. Valid as long as this
    /// response or a copy of it exists.
    const Headers& getHeaders() const;

    /// Returns the value of the first header called `name`, ignoring case, or nothing.
    std::optional<std::string> getHeader(std::string_view name) const;

    /// Why there is no response, as a kind that a program can act on.
    FailureKind getFailureKind() const;

    /// Why there is no response, as one line for people; empty if there is a response.
    const std::string& getReason() const;

private:
    int status_ = 0;
    FailureKind failureKind_ = FailureKind::NETWORK;
    std::shared_ptr<const std::string> paddedBody_;
    std::shared_ptr<const Headers> headers_;
    std::string reason_;
};

} // namespace Qx

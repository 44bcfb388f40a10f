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

/// What came back for one request: a status, headers and a body, or the reason why nothing did. A copyable value whose
/// copies share headers and body, which are never written again; may be read from several threads at once.
class QXBASE10_EXPORT HTTPResponse {
public:
    /// Bytes after the body that may be read, so that the parser need not copy it.
    static constexpr std::size_t padding = 64;

    /// Name and value of each header, in the order in which they came.
    using Headers = std::vector<std::pair<std::string, std::string>>;

    /// Why there is no response.
    enum class FailureKind : std::int32_t {
        NONE = 0,           ///< There is a response.
        REFUSED,            ///< The client does not send such a request, or does not follow such a redirect.
        NETWORK,            ///< No such host, no connection in time, or one that broke.
        TLS,                ///< No secure connection: a certificate that is not accepted, for example.
        TIMEOUT,            ///< The response took longer than it may.
        TOO_LARGE,          ///< The body is larger than it may be.
        MALFORMED_RESPONSE, ///< What came is no proper HTTP response.
        CANCELLED,          ///< The application has cancelled the request.
        CLOSED,             ///< The client was destroyed first.
        OUT_OF_MEMORY,      ///< There was no memory for the request or the response.
    };

    /// A transport failure of kind `NETWORK`, without a reason.
    HTTPResponse() = default;

    /// A response of the service. The body is held without a copy if it has room for `padding` more bytes.
    HTTPResponse(int status, std::string body, Headers headers = {});

    /// A failure that left no response: status 0, no body, no headers, and a reason of one line.
    static HTTPResponse transportFailure(FailureKind kind, std::string reason);

    /// True for a status of 200 to 299.
    bool isSuccessful() const;

    /// The HTTP status, or 0 for a transport failure.
    int getStatus() const;

    /// The body, decoded. Good as long as this response or a copy of it lives.
    std::string_view getBody() const;

    /// The headers of the response, those of redirects before it not included. Good as long as this response or a copy
    /// of it lives.
    const Headers& getHeaders() const;

    /// The value of the first header of that name, whatever the case of its letters; nothing if there is none.
    std::optional<std::string> getHeader(std::string_view name) const;

    /// Why there is no response: what to act upon, and one line for a person, which is empty if there is one.
    FailureKind getFailureKind() const;
    const std::string& getReason() const;

private:
    int status_ = 0;
    FailureKind failureKind_ = FailureKind::NETWORK;
    std::shared_ptr<const std::string> paddedBody_;
    std::shared_ptr<const Headers> headers_;
    std::string reason_;
};

} // namespace Qx

#pragma once

#include "Base/QxBase10/qxbase10_export.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace Qx {

/// What came back for one request: a status and a body, or the reason why nothing did. A copyable value
/// whose copies share the body, which is never written again; safe to read from several threads.
class QXBASE10_EXPORT HTTPResponse {
public:
    /// Bytes behind the body that may be read, so that the parser need not copy it.
    static constexpr std::size_t spareBytes = 64;

    /// Why there is no answer.
    enum class FailureKind : std::int32_t {
        NONE = 0,      ///< There is an answer.
        NOT_ALLOWED,   ///< Not sent: the client does not send such a request, or does not follow such a redirect.
        NETWORK,       ///< No host, no connection in time, or one that broke.
        TLS,           ///< No secure connection: a certificate that is not accepted, for example.
        TIMEOUT,       ///< The answer took longer than it may.
        TOO_LARGE,     ///< The body is larger than it may be.
        MALFORMED,     ///< What came back is no proper HTTP response.
        CLOSED,        ///< The client was closed first.
        OUT_OF_MEMORY, ///< There was no memory for the request or the answer.
    };

    /// A transport failure of kind `NETWORK`, without a reason.
    HTTPResponse() = default;

    /// An answer of the service. The body is held without a copy if it has room for `spareBytes` more.
    HTTPResponse(int status, std::string body);

    /// A failure before there was an answer: status 0, no body, and a reason of one line.
    static HTTPResponse transportFailure(FailureKind kind, std::string reason);

    /// True for a status of 200 to 299.
    bool isSuccessful() const;

    /// The HTTP status, or 0 for a transport failure.
    int getStatus() const;

    /// The body, decoded. Good as long as this response or a copy of it lives.
    std::string_view getBody() const;

    /// Why there is no answer: what to act upon, and, for a person, in one line that is empty if there is one.
    FailureKind getFailureKind() const;
    const std::string& getReason() const;

private:
    int status_ = 0;
    FailureKind failureKind_ = FailureKind::NETWORK;
    std::shared_ptr<const std::string> bodyAndSpareBytes_;
    std::string reason_;
};

} // namespace Qx

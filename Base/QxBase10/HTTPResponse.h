#pragma once

#include "Base/QxBase10/qxbase10_export.h"

#include <cstddef>
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

    /// A transport failure without a reason.
    HTTPResponse() = default;

    /// An answer of the service. The body is held without a copy if it has room for `spareBytes` more.
    HTTPResponse(int status, std::string body);

    /// A failure before there was an answer: status 0, no body, and a reason of one line.
    static HTTPResponse transportFailure(std::string reason);

    /// True for a status of 200 to 299.
    bool isSuccessful() const;

    /// The HTTP status, or 0 for a transport failure.
    int getStatus() const;

    /// The body, decoded. Good as long as this response or a copy of it lives.
    std::string_view getBody() const;

    /// Why there is no answer; empty if there is one.
    const std::string& getReason() const;

private:
    int status_ = 0;
    std::shared_ptr<const std::string> bodyAndSpareBytes_;
    std::string reason_;
};

} // namespace Qx

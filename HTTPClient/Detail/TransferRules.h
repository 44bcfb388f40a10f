#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "HTTPClient/CurlHTTPClientOptions.h"
#include "HTTPClient/Detail/Destination.h"

#include <string>
#include <vector>

namespace Qx::Detail {

/// What all transfers of one client keep to. May be used from several threads at once.
class TransferRules {
public:
    /// Throws `std::invalid_argument` with one line if an option makes no sense.
    explicit TransferRules(CurlHTTPClientOptions options);

    const CurlHTTPClientOptions& options() const;

    /// Whether the request gets a token, if there is one.
    bool sendsToken(const HTTPRequest& request) const;

    /// Why the request may not be sent there, in one line; empty if it may.
    std::string refusalOf(const HTTPRequest& request, const Destination& destination) const;

private:
    std::string refusalOfToken(const Destination& destination) const;

    const CurlHTTPClientOptions options_;
    const std::vector<Destination> tokenOrigins_;
};

/// Why no request may carry this token, in one line; empty if it may.
std::string refusalOfToken(const std::string& token);

} // namespace Qx::Detail

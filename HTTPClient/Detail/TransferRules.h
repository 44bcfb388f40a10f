#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "HTTPClient/CurlHTTPClientOptions.h"
#include "HTTPClient/Detail/Destination.h"

#include <string>
#include <vector>

namespace Qx::Detail {

/// The rules that all transfers of one client follow. Thread-safe.
class TransferRules {
public:
    /// Throws `std::invalid_argument`, with a one-line message, if an option is invalid.
    explicit TransferRules(CurlHTTPClientOptions options);

    const CurlHTTPClientOptions& options() const;

    /// Returns whether the request is sent with a token, if there is one.
    bool sendsToken(const HTTPRequest& request) const;

    /// Returns why the request may not be sent there, in one line; empty if it may.
    std::string refusalOf(const HTTPRequest& request, const Destination& destination) const;

private:
    std::string refusalOfToken(const Destination& destination) const;

    const CurlHTTPClientOptions options_;
    const std::vector<Destination> tokenOrigins_;
};

/// Returns why no request may carry this token, in one line; empty if it may.
std::string refusalOfToken(const std::string& token);

} // namespace Qx::Detail

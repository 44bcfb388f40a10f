#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Host/HTTPClient/CurlHTTPClientSettings.h"
#include "Host/HTTPClient/Destination.h"

#include <string>
#include <vector>

namespace OrvaneHost {

/// What all transfers of one client keep to. May be used from several threads at once.
class TransferRules {
public:
    /// Throws `std::invalid_argument` with one line if a setting makes no sense.
    explicit TransferRules(CurlHTTPClientSettings settings);

    const CurlHTTPClientSettings& settings() const;

    /// Whether the request gets the token.
    bool sendsToken(const Qx::HTTPRequest& request) const;

    /// Why the request may not be sent there, in one line; empty if it may.
    std::string refusalOf(const Qx::HTTPRequest& request, const Destination& destination) const;

private:
    std::string refusalOfToken(const Destination& destination) const;

    const CurlHTTPClientSettings settings_;
    const std::vector<Destination> tokenOrigins_;
};

} // namespace OrvaneHost

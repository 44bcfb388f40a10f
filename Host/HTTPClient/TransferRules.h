#pragma once

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

    /// Why the user's credentials may not go there, in one line; empty if they may. `what` they are is for the line;
    /// the token goes to fewer places than what a caller sets.
    std::string refusalOfCredentials(const Destination& destination, const std::string& what) const;
    std::string refusalOfToken(const Destination& destination) const;

private:
    const CurlHTTPClientSettings settings_;
    const std::vector<Destination> tokenOrigins_;
};

} // namespace OrvaneHost

#include "Host/HTTPClient/TransferRules.h"

#include "Host/HTTPClient/HTTPText.h"

#include <algorithm>
#include <fmt/format.h>
#include <stdexcept>
#include <utility>

namespace OrvaneHost {

namespace {

template <class Time>
void requirePositive(const char* name, Time time) {
    if (time <= Time::zero())
        throw std::invalid_argument(fmt::format("{} is {}; it has to be more than 0", name, time.count()));
}

void require(const CurlHTTPClientSettings& settings) {
    requirePositive("connectTimeout", settings.connectTimeout);
    requirePositive("requestTimeout", settings.requestTimeout);
    requirePositive("stallTimeout", settings.stallTimeout);
}

std::vector<Destination> destinationsOf(const std::vector<std::string>& urls) {
    std::vector<Destination> destinations;
    for (const std::string& url : urls) {
        destinations.emplace_back(url);
        if (!destinations.back().refusal().empty())
            throw std::invalid_argument("tokenOrigins: " + destinations.back().refusal());
    }
    return destinations;
}

} // namespace

TransferRules::TransferRules(CurlHTTPClientSettings settings)
    : settings_((require(settings), std::move(settings))), tokenOrigins_(destinationsOf(settings_.tokenOrigins)) {}

const CurlHTTPClientSettings& TransferRules::settings() const {
    return settings_;
}

std::string TransferRules::refusalOfCredentials(const Destination& destination, const std::string& what) const {
    if (destination.isHttps() || destination.isLocal())
        return {};
    return what + " goes over https only, or to this machine; use an https address";
}

std::string TransferRules::refusalOfToken(const Destination& destination) const {
    if (hasControl(settings_.token))
        return "the token holds a control character";
    const auto isThere = [&](const Destination& origin) { return origin.isSameOrigin(destination); };
    if (!tokenOrigins_.empty() && std::none_of(tokenOrigins_.begin(), tokenOrigins_.end(), isThere))
        return "the token does not go to the host of the address";
    return refusalOfCredentials(destination, "the token");
}

} // namespace OrvaneHost

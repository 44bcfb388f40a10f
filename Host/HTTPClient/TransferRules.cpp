#include "Host/HTTPClient/TransferRules.h"

#include "Host/HTTPClient/HTTPText.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fmt/format.h>
#include <stdexcept>
#include <utility>

namespace OrvaneHost {

namespace {

template <class Time>
void requireTime(const char* name, Time time) {
    if (time <= Time::zero() || time > std::chrono::hours(24))
        throw std::invalid_argument(fmt::format("{} has to be more than 0, and no more than a day", name));
}

void require(const CurlHTTPClientSettings& settings) {
    requireTime("connectTimeout", settings.connectTimeout);
    requireTime("requestTimeout", settings.requestTimeout);
    requireTime("stallTimeout", settings.stallTimeout);
    constexpr std::size_t maxThreads = 1000;
    if (settings.deliveryThreads > maxThreads)
        throw std::invalid_argument(fmt::format("deliveryThreads has to be no more than {}", maxThreads));
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

template <std::size_t count>
bool isOneOf(const std::string& name, const std::array<const char*, count>& names) {
    return std::any_of(names.begin(), names.end(), [&](const char* known) { return isSameName(name, known); });
}

bool isCredential(const std::string& name) {
    return isOneOf(name, std::array{"Authorization", "Proxy-Authorization", "Cookie"});
}

// With these a caller could make of one request two, or reach a host that the address does not name.
bool isForClientAlone(const std::string& name) {
    return isOneOf(name, std::array{"Connection", "Content-Length", "Host", "Transfer-Encoding", "Upgrade"});
}

std::string refusalOfCredentials(const Destination& destination, const std::string& what) {
    if (destination.isHttps() || destination.isLocal())
        return {};
    return what + " goes over https only, or to this machine; use an https address";
}

std::string refusalOfHeader(const std::string& name, const std::string& value, const Destination& destination) {
    if (!isHeaderName(name) || hasControl(value))
        return "invalid name of a header, or a control character in its value";
    if (isForClientAlone(name))
        return "the header " + name + " is set by the client alone";
    return isCredential(name) ? refusalOfCredentials(destination, "the header " + name) : std::string();
}

} // namespace

TransferRules::TransferRules(CurlHTTPClientSettings settings)
    : settings_((require(settings), std::move(settings))), tokenOrigins_(destinationsOf(settings_.tokenOrigins)) {}

const CurlHTTPClientSettings& TransferRules::settings() const {
    return settings_;
}

bool TransferRules::sendsToken(const Qx::HTTPRequest& request) const {
    return request.getAuthType() == Qx::HTTPRequest::AuthType::BEARER && !settings_.token.empty();
}

std::string TransferRules::refusalOf(const Qx::HTTPRequest& request, const Destination& destination) const {
    std::string refusal = destination.refusal();
    if (refusal.empty() && sendsToken(request))
        refusal = refusalOfToken(destination);
    for (const auto& [name, value] : request.getHeaders())
        if (refusal.empty())
            refusal = refusalOfHeader(name, value, destination);
    return refusal;
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

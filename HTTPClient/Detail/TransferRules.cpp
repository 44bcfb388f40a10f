#include "HTTPClient/Detail/TransferRules.h"

#include "HTTPClient/Detail/HTTPText.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fmt/format.h>
#include <stdexcept>
#include <utility>

namespace Qx::Detail {

namespace {

template <class Time>
void requireTime(const char* name, Time time) {
    if (time <= Time::zero() || time > std::chrono::hours(24))
        throw std::invalid_argument(fmt::format("{} must be more than 0 and at most a day", name));
}

void require(const CurlHTTPClientOptions& options) {
    requireTime("connectTimeout", options.connectTimeout);
    requireTime("requestTimeout", options.requestTimeout);
    requireTime("stallTimeout", options.stallTimeout);
    requireTime("retryDelay", options.retryDelay);
    requireTime("maxRetryAfter", options.maxRetryAfter);
    constexpr std::size_t maxThreads = 1000;
    if (options.callbackThreads > maxThreads)
        throw std::invalid_argument(fmt::format("callbackThreads must be at most {}", maxThreads));
    if (hasControl(options.userAgent))
        throw std::invalid_argument("userAgent contains a control character");
    // The URL is not quoted: it may contain a password.
    if (options.proxy && !options.proxy->empty() && !isProxyURL(*options.proxy))
        throw std::invalid_argument("proxy is not a valid proxy URL");
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

// With these, a caller could turn one request into two, or reach a host that the URL does not name.
bool isForClientAlone(const std::string& name) {
    return isOneOf(name, std::array{"Connection", "Content-Length", "Host", "Transfer-Encoding", "Upgrade"});
}

std::string refusalOfCredentials(const Destination& destination, const std::string& what) {
    if (destination.isHttps() || destination.isLocal())
        return {};
    return what + " is sent only over https or to this machine; use an https URL";
}

std::string refusalOfHeader(const std::string& name, const std::string& value, const Destination& destination) {
    if (!isHeaderName(name))
        return "invalid header name";
    if (hasControl(value))
        return "the header " + name + " contains a control character";
    if (isForClientAlone(name))
        return "the header " + name + " may only be set by the client";
    return isCredential(name) ? refusalOfCredentials(destination, "the header " + name) : std::string();
}

} // namespace

TransferRules::TransferRules(CurlHTTPClientOptions options)
    : options_((require(options), std::move(options))), tokenOrigins_(destinationsOf(options_.tokenOrigins)) {}

const CurlHTTPClientOptions& TransferRules::options() const {
    return options_;
}

bool TransferRules::sendsToken(const HTTPRequest& request) const {
    // A caller's own Authorization header replaces the token.
    for (const auto& [name, value] : request.getHeaders())
        if (isSameName(name, "Authorization"))
            return false;
    return request.getAuthType() == HTTPRequest::AuthType::BEARER && (options_.tokenSource || !options_.token.empty());
}

std::string TransferRules::refusalOf(const HTTPRequest& request, const Destination& destination) const {
    std::string refusal = destination.refusal();
    if (refusal.empty() && sendsToken(request))
        refusal = refusalOfToken(destination);
    for (const auto& [name, value] : request.getHeaders())
        if (refusal.empty())
            refusal = refusalOfHeader(name, value, destination);
    return refusal;
}

std::string TransferRules::refusalOfToken(const Destination& destination) const {
    const auto isThere = [&](const Destination& origin) { return origin.isSameOrigin(destination); };
    if (!tokenOrigins_.empty() && std::none_of(tokenOrigins_.begin(), tokenOrigins_.end(), isThere))
        return "the token is not for the host of the URL";
    const std::string refusal = refusalOfCredentials(destination, "the token");
    return refusal.empty() && !options_.tokenSource ? Detail::refusalOfToken(options_.token) : refusal;
}

std::string refusalOfToken(const std::string& token) {
    return hasControl(token) ? "the token contains a control character" : "";
}

} // namespace Qx::Detail

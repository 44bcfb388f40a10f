#include "HTTPClient/Detail/Destination.h"

#include "HTTPClient/Detail/HTTPText.h"
#include "HTTPClient/Detail/SystemSockets.h"

#include <algorithm>
#include <fmt/format.h>
#include <new>
#include <string_view>
#include <utility>

namespace Qx::Detail {

namespace {

CurlUrl orBadAlloc(CURLU* url) {
    if (!url)
        throw std::bad_alloc();
    return CurlUrl(url);
}

CURLUcode orBadAlloc(CURLUcode result) {
    if (result == CURLUE_OUT_OF_MEMORY)
        throw std::bad_alloc();
    return result;
}

// Returns an empty string if the URL lacks that part.
std::string partOf(CURLU* url, CURLUPart part, unsigned flags = 0) {
    char* text = nullptr;
    if (orBadAlloc(curl_url_get(url, part, &text, flags)) != CURLUE_OK)
        return {};
    return CurlText(text).get();
}

bool has(CURLU* url, CURLUPart part) {
    char* text = nullptr;
    const bool isThere = orBadAlloc(curl_url_get(url, part, &text, 0)) == CURLUE_OK;
    curl_free(text);
    return isThere;
}

// Whether the host may be this machine in a form that `isLoopback` does not recognise: an
// unspecified address, a legacy form of a loopback address, an IPv6 address that embeds an IPv4
// address, or a name under "localhost".
bool isAnyLocal(const std::string& host) {
    constexpr std::string_view localhost = ".localhost";
    const std::string end = host.substr(host.size() - std::min(host.size(), localhost.size()));
    in6_addr address6{};
    // inet_addr also accepts the legacy forms that resolvers take: "0", "127.1" or "0x7f000001".
    if (const auto address = inet_addr(host.c_str()); address != INADDR_NONE)
        return ntohl(address) >> 24 == 0 || ntohl(address) >> 24 == 127;
    if (host.starts_with('[') && inet_pton(AF_INET6, host.substr(1, host.size() - 2).c_str(), &address6) == 1)
        return IN6_IS_ADDR_UNSPECIFIED(&address6) || IN6_IS_ADDR_V4MAPPED(&address6) || IN6_IS_ADDR_V4COMPAT(&address6);
    return isSameName(end, std::string(localhost)) || isSameName(end, "localhost.");
}

} // namespace

Destination::Destination(const std::string& url) : Destination(orBadAlloc(curl_url()), url, 0) {}

Destination Destination::redirected(const std::string& location) const {
    // Servers may leave spaces and other bytes unencoded.
    return {orBadAlloc(curl_url_dup(url_.get())), location, CURLU_URLENCODE | CURLU_ALLOW_SPACE};
}

Destination::Destination(CurlUrl url, const std::string& text, unsigned flags) : url_(std::move(url)) {
    if (hasControl(text)) {
        refusal_ = "the URL contains a control character";
        return;
    }
    const bool isURL = orBadAlloc(curl_url_set(url_.get(), CURLUPART_URL, text.c_str(), flags)) == CURLUE_OK;
    const bool hasCredentials = isURL ? has(url_.get(), CURLUPART_USER) || has(url_.get(), CURLUPART_PASSWORD)
                                      : text.find('@') != std::string::npos;
    scheme_ = partOf(url_.get(), CURLUPART_SCHEME);
    host_ = partOf(url_.get(), CURLUPART_HOST);
    port_ = partOf(url_.get(), CURLUPART_PORT, CURLU_DEFAULT_PORT);
    text_ = partOf(url_.get(), CURLUPART_URL);
    // An invalid character in a password can make the parser take the user name for the host.
    isNamed_ = isURL && text.find('@') == std::string::npos;
    if (hasCredentials)
        refusal_ = "the URL contains a user name or password";
    else if (!isURL || (scheme_ != "https" && scheme_ != "http"))
        refusal_ = "not a valid http or https URL";
    else if (has(url_.get(), CURLUPART_ZONEID))
        refusal_ = "the URL contains an IPv6 zone";
}

const std::string& Destination::refusal() const {
    return refusal_;
}

bool Destination::isHttps() const {
    return scheme_ == "https";
}

bool Destination::isLocal() const {
    return isLoopback(host_);
}

bool Destination::mayBeLocal() const {
    return isLocal() || isAnyLocal(host_);
}

bool Destination::isSameOrigin(const Destination& other) const {
    return scheme_ == other.scheme_ && isSameName(host_, other.host_) && port_ == other.port_;
}

const std::string& Destination::port() const {
    return port_;
}

std::string Destination::name() const {
    return isNamed_ ? fmt::format("{}://{}:{}", scheme_, host_, port_) : "";
}

std::string Destination::withoutValues() const {
    std::string_view text(text_);
    text = text.substr(0, text.find('#'));
    const std::size_t question = std::min(text.find('?'), text.size());
    std::string shown(text.substr(0, question));
    char separator = '?';
    for (std::string_view rest = text.substr(question); !rest.empty();
         rest = rest.substr(std::min(rest.find('&'), rest.size()))) {
        rest.remove_prefix(1);
        const std::string_view pair = rest.substr(0, rest.find('&'));
        // Without "=", or with nothing after it, the text may be a value itself.
        const std::size_t equals = pair.find('=');
        if (equals != std::string_view::npos && pair.find_first_not_of('=', equals) != std::string_view::npos) {
            shown.append({separator}).append(pair.substr(0, equals + 1));
            separator = '&';
        }
    }
    return shown;
}

CURLU* Destination::url() const {
    return url_.get();
}

bool isLoopback(const std::string& host) {
    in_addr address{};
    const bool isIPv4 = inet_pton(AF_INET, host.c_str(), &address) == 1;
    return isSameName(host, "localhost") || host == "[::1]" || host == "::1" || (isIPv4 && host.starts_with("127."));
}

bool isProxyURL(const std::string& url) {
    const CurlUrl parsed = orBadAlloc(curl_url());
    if (hasControl(url) || orBadAlloc(curl_url_set(parsed.get(), CURLUPART_URL, url.c_str(),
                                                   CURLU_DEFAULT_SCHEME | CURLU_NON_SUPPORT_SCHEME)) != CURLUE_OK)
        return false;
    const std::string scheme = partOf(parsed.get(), CURLUPART_SCHEME);
    return scheme == "http" || scheme == "https" || scheme == "socks5" || scheme == "socks5h";
}

} // namespace Qx::Detail

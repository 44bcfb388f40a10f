#include "Host/HTTPClient/Destination.h"

#include "Host/HTTPClient/HTTPText.h"

#include <arpa/inet.h>
#include <fmt/format.h>
#include <new>
#include <utility>

namespace OrvaneHost {

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

// Empty if the URL lacks it.
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

bool isLoopback(const std::string& host) {
    in_addr address{};
    const bool isIPv4 = inet_pton(AF_INET, host.c_str(), &address) == 1;
    return host == "localhost" || host == "[::1]" || (isIPv4 && host.starts_with("127."));
}

} // namespace

Destination::Destination(const std::string& url) : Destination(orBadAlloc(curl_url()), url, 0) {}

Destination Destination::redirected(const std::string& location) const {
    // Servers leave blanks and other bytes unencoded.
    return {orBadAlloc(curl_url_dup(url_.get())), location, CURLU_URLENCODE | CURLU_ALLOW_SPACE};
}

Destination::Destination(CurlUrl url, const std::string& text, unsigned flags) : url_(std::move(url)) {
    if (hasControl(text)) {
        refusal_ = "the address holds a control character";
        return;
    }
    const bool isURL = orBadAlloc(curl_url_set(url_.get(), CURLUPART_URL, text.c_str(), flags)) == CURLUE_OK;
    const bool hasCredentials = isURL ? has(url_.get(), CURLUPART_USER) || has(url_.get(), CURLUPART_PASSWORD)
                                      : text.find('@') != std::string::npos;
    scheme_ = partOf(url_.get(), CURLUPART_SCHEME);
    host_ = partOf(url_.get(), CURLUPART_HOST);
    port_ = partOf(url_.get(), CURLUPART_PORT, CURLU_DEFAULT_PORT);
    // A password with other signs in it than it may have makes a user name a host.
    isNamed_ = isURL && text.find('@') == std::string::npos;
    if (hasCredentials)
        refusal_ = "the address holds a user name or password";
    else if (!isURL || (scheme_ != "https" && scheme_ != "http"))
        refusal_ = "the address is no valid http or https address";
    else if (has(url_.get(), CURLUPART_ZONEID))
        refusal_ = "the address holds a zone, which libcurl does not keep to";
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

bool Destination::isSameOrigin(const Destination& other) const {
    return scheme_ == other.scheme_ && isSameName(host_, other.host_) && port_ == other.port_;
}

std::string Destination::name() const {
    return isNamed_ ? fmt::format("{}://{}:{}", scheme_, host_, port_) : "the host of the address";
}

CURLU* Destination::url() const {
    return url_.get();
}

} // namespace OrvaneHost

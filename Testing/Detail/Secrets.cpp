#include "Testing/Detail/Secrets.h"

#include <algorithm>
#include <array>
#include <boost/algorithm/string/replace.hpp>
#include <string_view>
#include <utility>

namespace Orvane::Testing::Detail {

namespace {

using Qx::HTTPResponse;

// Whether the name of a header or query parameter suggests that the value is a credential.
bool namesCredential(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    constexpr std::array<std::string_view, 12> parts{"auth",  "cookie", "credential", "csrf",    "jwt",       "key",
                                                     "passw", "pwd",    "secret",     "session", "signature", "token"};
    // A percent-encoded name could be any of these.
    return name == "sig" || name == "code" || name.find('%') != std::string::npos ||
           std::any_of(parts.begin(), parts.end(),
                       [&](std::string_view part) { return name.find(part) != std::string::npos; });
}

// Returns the URL without user name and password. A password may contain any character, even "?":
// if what looks like a port is not a number, everything before the last "@" is taken to belong to
// the password.
std::string withoutUser(const std::string& url) {
    const std::size_t scheme = url.find("://");
    const std::size_t start = scheme == std::string::npos ? 0 : scheme + 3;
    const std::size_t end = std::min(url.find_first_of("/?#", start), url.size());
    const std::string authority = url.substr(start, end - start);
    const std::size_t colon = std::min(authority.find(':'), authority.size());
    const bool isHost = scheme != std::string::npos && authority.find('@') == std::string::npos &&
                        authority.find_first_not_of(":0123456789", colon) == std::string::npos;
    const std::size_t at = isHost || authority.starts_with('[') ? std::string::npos : url.rfind('@');
    return at == std::string::npos ? url : url.substr(0, start) + url.substr(at + 1);
}

} // namespace

std::string withoutSecrets(const std::string& url) {
    const std::string plain = withoutUser(url);
    const std::size_t query = std::min(plain.find_first_of("?#"), plain.size());
    std::string shown = plain.substr(0, query);
    for (std::size_t at = query; at < plain.size();) {
        const std::size_t end = std::min(plain.find_first_of("?&;#", at + 1), plain.size());
        const std::size_t equals = std::min(plain.find('=', at), end);
        const bool isSecret = equals < end && namesCredential(plain.substr(at + 1, equals - at - 1));
        shown += isSecret ? plain.substr(at, equals + 1 - at) + "***" : plain.substr(at, end - at);
        at = end;
    }
    return shown;
}

HTTPResponse withoutSecrets(const HTTPResponse& response) {
    const auto holdsNone = [](const std::string& text) { return withoutSecrets(text) == text; };
    if (response.getStatus() == 0)
        return HTTPResponse::transportFailure(response.getFailureKind(),
                                              holdsNone(response.getReason()) ? response.getReason() : "");
    HTTPResponse::Headers headers;
    for (const auto& [name, value] : response.getHeaders())
        if (!namesCredential(name) && holdsNone(value))
            headers.emplace_back(name, value);
    return HTTPResponse(response.getStatus(), std::string(response.getBody()), std::move(headers));
}

HTTPResponse without(const std::string& secret, const HTTPResponse& response) {
    const auto replace = [&](std::string text) {
        boost::algorithm::replace_all(text, secret, "***");
        return text;
    };
    if (response.getStatus() == 0)
        return HTTPResponse::transportFailure(response.getFailureKind(), replace(response.getReason()));
    HTTPResponse::Headers headers;
    for (const auto& [name, value] : response.getHeaders())
        headers.emplace_back(replace(name), replace(value));
    return HTTPResponse(response.getStatus(), replace(std::string(response.getBody())), std::move(headers));
}

} // namespace Orvane::Testing::Detail

#include "Testing/Detail/Secrets.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace Orvane::Testing::Detail {

namespace {

using Qx::HTTPResponse;

// Of a header or of a query's key.
bool namesCredential(std::string name) {
    std::transform(name.begin(), name.end(), name.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    constexpr std::array<std::string_view, 11> parts{"auth", "cookie", "credential", "jwt",       "key",  "passw",
                                                     "pwd",  "secret", "session",    "signature", "token"};
    return name == "sig" || std::any_of(parts.begin(), parts.end(),
                                        [&](std::string_view part) { return name.find(part) != std::string::npos; });
}

// A password may hold any sign, so all before the last "@" belongs to it.
std::string withoutUser(const std::string& url) {
    const std::size_t at = url.rfind('@', url.find('?'));
    const std::size_t start = url.find("://");
    if (at == std::string::npos)
        return url;
    return (start < at ? url.substr(0, start + 3) : "") + url.substr(at + 1);
}

} // namespace

std::string withoutSecrets(const std::string& url) {
    const std::string plain = withoutUser(url);
    const std::size_t query = std::min(plain.find('?'), plain.size());
    std::string shown = plain.substr(0, query);
    for (std::size_t at = query; at < plain.size();) {
        const std::size_t end = std::min(plain.find_first_of("&;#", at + 1), plain.size());
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

} // namespace Orvane::Testing::Detail

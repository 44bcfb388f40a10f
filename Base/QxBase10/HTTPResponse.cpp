#include "Base/QxBase10/HTTPResponse.h"

#include <algorithm>
#include <utility>

namespace Qx {

namespace {

// Compares ignoring case. Header names are ASCII, so the locale must not matter.
bool isSameLetter(char one, char other) {
    const auto lower = [](char letter) { return letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter; };
    return lower(one) == lower(other);
}

} // namespace

HTTPResponse::HTTPResponse(int status, std::string body, Headers headers)
    : status_(status), failureKind_(FailureKind::NONE) {
    body.append(padding, '\0');
    paddedBody_ = std::make_shared<const std::string>(std::move(body));
    if (!headers.empty())
        headers_ = std::make_shared<const Headers>(std::move(headers));
}

HTTPResponse HTTPResponse::transportFailure(FailureKind kind, std::string reason) {
    HTTPResponse response;
    response.failureKind_ = kind;
    response.reason_ = std::move(reason);
    return response;
}

bool HTTPResponse::isSuccessful() const {
    return status_ >= 200 && status_ <= 299;
}

int HTTPResponse::getStatus() const {
    return status_;
}

std::string_view HTTPResponse::getBody() const {
    if (!paddedBody_)
        return {};
    return std::string_view(*paddedBody_).substr(0, paddedBody_->size() - padding);
}

const HTTPResponse::Headers& HTTPResponse::getHeaders() const {
    static const Headers none;
    return headers_ ? *headers_ : none;
}

std::optional<std::string> HTTPResponse::getHeader(std::string_view name) const {
    for (const auto& [known, value] : getHeaders())
        if (std::equal(known.begin(), known.end(), name.begin(), name.end(), isSameLetter))
            return value;
    return std::nullopt;
}

HTTPResponse::FailureKind HTTPResponse::getFailureKind() const {
    return failureKind_;
}

const std::string& HTTPResponse::getReason() const {
    return reason_;
}

} // namespace Qx

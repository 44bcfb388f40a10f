#include "Base/QxBase10/HTTPResponse.h"

#include <utility>

namespace Qx {

HTTPResponse::HTTPResponse(int status, std::string body) : status_(status), failureKind_(FailureKind::NONE) {
    body.append(spareBytes, '\0');
    bodyAndSpareBytes_ = std::make_shared<const std::string>(std::move(body));
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
    if (!bodyAndSpareBytes_)
        return {};
    return std::string_view(*bodyAndSpareBytes_).substr(0, bodyAndSpareBytes_->size() - spareBytes);
}

HTTPResponse::FailureKind HTTPResponse::getFailureKind() const {
    return failureKind_;
}

const std::string& HTTPResponse::getReason() const {
    return reason_;
}

} // namespace Qx

#include "Base/QxBaseCore10/Status.h"

#include <utility>

namespace Qx {

Status Status::failure(std::string reason) {
    Status status;
    status.isOk_ = false;
    status.reason_ = std::move(reason);
    return status;
}

bool Status::isOk() const {
    return isOk_;
}

const std::string& Status::reason() const {
    return reason_;
}

} // namespace Qx

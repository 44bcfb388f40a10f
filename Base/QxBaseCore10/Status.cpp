#include "Base/QxBaseCore10/Status.h"

namespace Qx {

bool Status::isOk() const {
    return reason_.empty();
}

const std::string& Status::reason() const {
    return reason_;
}

void Status::setReason(std::string_view reason) {
    reason_ = reason;
}

} // namespace Qx

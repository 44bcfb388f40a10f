#include "Server/Orvane/Payloads/Links.h"

#include "Server/Orvane/Payloads/Detail/JSONReading.h"

namespace Orvane::Payloads {

Links::Links(const Qx::JSONNode& node) {
    init(node);
}

void Links::init(const Qx::JSONNode& node) {
    read(node, "self", href_);
}

std::string Links::getHref() const {
    return href_;
}

void Links::setHref(const std::string& href) {
    href_ = href;
}

} // namespace Orvane::Payloads

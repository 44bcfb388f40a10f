#include "Server/Orvane/Payloads/Data.h"

#include "Server/Orvane/Payloads/Detail/JSONReading.h"

namespace Orvane::Payloads {

Data::Data(const Qx::JSONNode& node) {
    init(node);
}

void Data::init(const Qx::JSONNode& node) {
    read(node, "id", id_);
    read(node, "type", type_);
}

std::string Data::getId() const {
    return id_;
}

void Data::setId(const std::string& id) {
    id_ = id;
}

std::string Data::getType() const {
    return type_;
}

void Data::setType(const std::string& type) {
    type_ = type;
}

} // namespace Orvane::Payloads

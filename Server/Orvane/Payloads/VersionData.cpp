#include "Server/Orvane/Payloads/VersionData.h"

#include "Server/Orvane/Payloads/Detail/JSONReading.h"
#include "Server/Orvane/Payloads/Detail/Texts.h"

namespace Orvane::Payloads {

VersionData::VersionData(const Qx::JSONNode& node) : Data(node) {
    if (getType() != Texts::versions)
        return;
    read(node, "name", name_);
    read(node, "title", title_);
    fileId_ = idOf(node, "file");
}

std::string VersionData::dataType() {
    return std::string(Texts::versions);
}

const std::string& VersionData::getName() const {
    return name_;
}

const std::string& VersionData::getFileId() const {
    return fileId_;
}

const std::string& VersionData::getTitle() const {
    return title_;
}

} // namespace Orvane::Payloads

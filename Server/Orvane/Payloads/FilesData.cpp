#include "Server/Orvane/Payloads/FilesData.h"

#include "Server/Orvane/Payloads/Detail/Conversions.h"
#include "Server/Orvane/Payloads/Detail/JSONReading.h"
#include "Server/Orvane/Payloads/Detail/Texts.h"

namespace Orvane::Payloads {

FilesData::FilesData(const Qx::JSONNode& node) : Data(node) {
    if (getType() != Texts::files)
        return;
    read(node, "name", name_);
    readParent(node);
    // Attributes come after the parent, since a configuration design may replace the parent id.
    readAttributes(node);
}

void FilesData::readParent(const Qx::JSONNode& node) {
    const auto parent = child(node, "parent");
    if (!parent)
        return;
    parentType_ = containerTypeFromString(readText(*parent, "type"));
    // The id of a file's project is in "project", next to "parent"; the id in "parent" is not the
    // project's.
    if (parentType_ == ContainerType::PROJECT)
        parentId_ = idOf(node, "project");
    else
        read(*parent, "id", parentId_);
}

void FilesData::readAttributes(const Qx::JSONNode& node) {
    const auto attributes = child(node, "attributes");
    if (!attributes)
        return;
    if (const auto subTypes = child(*attributes, "subTypes"); subTypes && subTypes->exists("value"))
        subTypes_ = (*subTypes)["value"].asHString("");
    if (!isConfigurationDesign())
        return;
    if (const auto project = child(*attributes, "configuredDesignProjectId"); project && project->exists("value"))
        parentId_ = (*project)["value"].asHString("");
}

std::string FilesData::dataType() {
    return std::string(Texts::files);
}

std::wstring FilesData::getName() const {
    return name_;
}

std::string FilesData::getParentId() const {
    return parentId_;
}

ContainerType FilesData::getParentType() const {
    return parentType_;
}

void FilesData::setParentType(ContainerType parentType) {
    parentType_ = parentType;
}

std::optional<std::string> FilesData::getSubTypes() const {
    return subTypes_;
}

bool FilesData::isConfigurationDesign() const {
    return subTypes_ == Texts::configuration;
}

} // namespace Orvane::Payloads

#include "Server/Orvane/Payloads/FolderData.h"

#include "Server/Orvane/Payloads/Detail/Conversions.h"
#include "Server/Orvane/Payloads/Detail/JSONReading.h"
#include "Server/Orvane/Payloads/Detail/Texts.h"

namespace Orvane::Payloads {

FolderData::FolderData(const Qx::JSONNode& node) {
    Data::init(node);
    // The link is read before the type is checked, so that a resource of another type keeps it.
    if (const auto links = child(node, "links"))
        Links::init(*links);
    if (getType() != Texts::folders)
        return;
    read(node, "name", name_);
    read(node, "parent", parent_);
    read(node, "visible", visible_);
    status_ = containerStatusFromString(readText(node, "status"));
    containerType_ = containerTypeFromString(readText(node, "containerType"));
    if (const auto me = child(node, "me"))
        readStanding(*me);
}

void FolderData::readStanding(const Qx::JSONNode& me) {
    isMember_ = readText(me, "isMember") == Texts::isTrue;
    read(me, "membership", membership_);
    if (const auto actions = child(me, "allowed-actions"))
        for (const Qx::JSONRef& action : *actions)
            allowedActions_.insert(action.asHString(""));
}

// Deliberately partial: the target keeps its own link and `membership_`.
FolderData& FolderData::operator=(const FolderData& other) {
    Data::operator=(other);
    name_ = other.name_;
    parent_ = other.parent_;
    visible_ = other.visible_;
    status_ = other.status_;
    isMember_ = other.isMember_;
    allowedActions_ = other.allowedActions_;
    containerType_ = other.containerType_;
    return *this;
}

std::string FolderData::dataType() {
    return std::string(Texts::folders);
}

const std::string& FolderData::name() const {
    return name_;
}

void FolderData::name(const std::string& name) {
    name_ = name;
}

const std::string& FolderData::parent() const {
    return parent_;
}

void FolderData::parent(const std::string& parent) {
    parent_ = parent;
}

bool FolderData::visible() const {
    return visible_;
}

void FolderData::visible(bool visible) {
    visible_ = visible;
}

ContainerStatus FolderData::status() const {
    return status_;
}

void FolderData::status(ContainerStatus status) {
    status_ = status;
}

void FolderData::status(const std::string& status) {
    status_ = containerStatusFromString(status);
}

bool FolderData::isMember() const {
    return isMember_;
}

void FolderData::setMember(bool isMember) {
    isMember_ = isMember;
}

std::string FolderData::membership() const {
    return membership_;
}

void FolderData::membership(const std::string& membership) {
    membership_ = membership;
}

const std::set<std::string>& FolderData::allowedActions() const {
    return allowedActions_;
}

void FolderData::allowedActions(const std::set<std::string>& allowedActions) {
    allowedActions_ = allowedActions;
}

ContainerType FolderData::type() const {
    return containerType_;
}

void FolderData::type(ContainerType containerType) {
    containerType_ = containerType;
}

bool FolderData::hasPermission(const std::string& action) const {
    return allowedActions_.contains(action);
}

bool FolderData::operator==(const FolderData& other) const {
    return getId() == other.getId() && name_ == other.name_ && parent_ == other.parent_ && visible_ == other.visible_ &&
           status_ == other.status_ && isMember_ == other.isMember_ && containerType_ == other.containerType_;
}

bool FolderData::isValid() const {
    return !(*this == FolderData());
}

} // namespace Orvane::Payloads

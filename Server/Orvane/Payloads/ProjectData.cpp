#include "Server/Orvane/Payloads/ProjectData.h"

#include "Server/Orvane/Payloads/Detail/Conversions.h"
#include "Server/Orvane/Payloads/Detail/JSONReading.h"
#include "Server/Orvane/Payloads/Detail/Texts.h"

namespace Orvane::Payloads {

ProjectData::ProjectData(const Qx::JSONNode& node) {
    Data::init(node);
    if (getType() != Texts::projects)
        return;
    read(node, "name", name_);
    read(node, "parent", parent_);
    read(node, "visible", visible_);
    // Without a status, a project is active; a folder is not.
    if (node.exists("status"))
        setStatus(readText(node, "status"));
    if (const auto me = child(node, "me"))
        readStanding(*me);
    if (const auto links = child(node, "links"))
        Links::init(*links);
    read(node, "communityType", communityType_);
}

void ProjectData::readStanding(const Qx::JSONNode& me) {
    read(me, "membership", membership_);
    read(me, "role", role_);
    read(me, "isMember", isMember_);
}

std::string ProjectData::dataType() {
    return std::string(Texts::projects);
}

std::wstring ProjectData::getName() const {
    return name_;
}

void ProjectData::setName(const std::wstring& name) {
    name_ = name;
}

std::string ProjectData::getParent() const {
    return parent_;
}

void ProjectData::setParent(const std::string& parent) {
    parent_ = parent;
}

bool ProjectData::Visible() const {
    return visible_;
}

void ProjectData::Visible(bool visible) {
    visible_ = visible;
}

ContainerStatus ProjectData::getStatus() const {
    return status_;
}

void ProjectData::setStatus(ContainerStatus status) {
    status_ = status;
}

void ProjectData::setStatus(const std::string& status) {
    status_ = containerStatusFromString(status);
}

std::string ProjectData::getMembership() const {
    return membership_;
}

void ProjectData::setMembership(const std::string& membership) {
    membership_ = membership;
}

std::string ProjectData::getRole() const {
    return role_;
}

void ProjectData::setRole(const std::string& role) {
    role_ = role;
}

std::string ProjectData::getCommunityType() const {
    return communityType_;
}

void ProjectData::setCommunityType(const std::string& communityType) {
    communityType_ = communityType;
}

bool ProjectData::IsMember() const {
    return isMember_ == Texts::isTrue;
}

bool ProjectData::IsViewerRole() const {
    return role_ == Texts::viewer;
}

bool ProjectData::isControlledProject() const {
    return communityType_ == Texts::controlled;
}

} // namespace Orvane::Payloads

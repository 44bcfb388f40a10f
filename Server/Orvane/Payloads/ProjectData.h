#pragma once

#include "Server/Orvane/Payloads/ContainerStatus.h"
#include "Server/Orvane/Payloads/Data.h"
#include "Server/Orvane/Payloads/Links.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <string>

namespace Orvane::Payloads {

/// One project of the service, with the calling user's standing in it. A plain value; may be read from
/// several threads at once.
class QXORVANEDM10_EXPORT ProjectData : public Data, public Links {
public:
    /// Every field at its default.
    ProjectData() = default;

    /// Reads one element of "included.projects". A node whose "type" is not "projects" gives its "id" and
    /// "type" alone; a key that is missing leaves its field as it is by default. Where a text is
    /// expected a number or boolean is taken as one; other values of the wrong kind, null included, leave the
    /// field too, but where told otherwise. The link is "links.self".
    explicit ProjectData(const Qx::JSONNode& node);

    /// "projects".
    static std::string dataType();

    /// The key "name"; empty by default.
    std::wstring getName() const;
    void setName(const std::wstring& name);

    /// The key "parent": the parent's URN; empty by default.
    std::string getParent() const;
    void setParent(const std::string& parent);

    /// The key "visible"; false by default.
    bool Visible() const;
    void Visible(bool visible);

    /// The key "status"; `ACTIVE` by default, also for a project whose JSON has none; `OTHER` if it is null,
    /// an object or an array.
    ContainerStatus getStatus() const;
    void setStatus(ContainerStatus status);
    /// The service's text; one that is not known gives `OTHER`.
    void setStatus(const std::string& status);

    /// The key "me.membership", as the service sent it; empty by default.
    std::string getMembership() const;
    void setMembership(const std::string& membership);

    /// The key "me.role", such as "PROJECT_ADMIN" or "VIEWER"; empty by default.
    std::string getRole() const;
    void setRole(const std::string& role);

    /// The key "communityType"; empty by default.
    std::string getCommunityType() const;
    void setCommunityType(const std::string& communityType);

    /// The key "me.isMember": true only for "true" or true; false by default.
    bool IsMember() const;

    /// True if the role is exactly "VIEWER".
    bool IsViewerRole() const;

    /// True if the community type is exactly "CONTROLLED".
    bool isControlledProject() const;

private:
    void readStanding(const Qx::JSONNode& me);

    std::wstring name_;
    std::string parent_;
    bool visible_ = false;
    ContainerStatus status_ = ContainerStatus::ACTIVE;
    std::string membership_;
    std::string isMember_;
    std::string role_;
    std::string communityType_;
};

} // namespace Orvane::Payloads

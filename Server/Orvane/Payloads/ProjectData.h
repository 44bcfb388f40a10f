#pragma once

#include "Server/Orvane/Payloads/ContainerStatus.h"
#include "Server/Orvane/Payloads/Data.h"
#include "Server/Orvane/Payloads/Links.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <string>

namespace Orvane::Payloads {

/// One project of the service, with the user's membership and role in it. A plain value; may be
/// read from several threads at once.
class QXORVANEDM10_EXPORT ProjectData : public Data, public Links {
public:
    /// All fields have their defaults.
    ProjectData() = default;

    /// Reads one element of "included.projects". If the "type" of the node is not "projects", reads
    /// only "id" and "type". If a key is missing, its field keeps its default. Where text is
    /// expected, a number or boolean is converted to text; any other value of the wrong type,
    /// including null, leaves the default too, except as noted. The link is "links.self".
    explicit ProjectData(const Qx::JSONNode& node);

    /// Returns "projects".
    static std::string dataType();

    /// The value of "name"; empty by default.
    std::wstring getName() const;
    /// Sets the name.
    void setName(const std::wstring& name);

    /// The value of "parent": the parent's URN; empty by default.
    std::string getParent() const;
    /// Sets the parent's URN.
    void setParent(const std::string& parent);

    /// The value of "visible"; false by default.
    bool Visible() const;
    /// Sets whether the project is visible.
    void Visible(bool visible);

    /// The value of "status"; `ACTIVE` by default, also for a project whose JSON has no status;
    /// `OTHER` if it is unknown, null, an object or an array.
    ContainerStatus getStatus() const;
    /// Sets the status.
    void setStatus(ContainerStatus status);
    /// Sets the status from the service's string; an unknown one sets `OTHER`.
    void setStatus(const std::string& status);

    /// The value of "me.membership", as the service sent it; empty by default.
    std::string getMembership() const;
    /// Sets the membership.
    void setMembership(const std::string& membership);

    /// The value of "me.role", such as "PROJECT_ADMIN" or "VIEWER"; empty by default.
    std::string getRole() const;
    /// Sets the role.
    void setRole(const std::string& role);

    /// The value of "communityType"; empty by default.
    std::string getCommunityType() const;
    /// Sets the community type.
    void setCommunityType(const std::string& communityType);

    /// The value of "me.isMember": true only for true or the string "true"; false by default.
    bool IsMember() const;

    /// Returns true if the role is exactly "VIEWER".
    bool IsViewerRole() const;

    /// Returns true if the community type is exactly "CONTROLLED".
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

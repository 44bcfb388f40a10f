#pragma once

#include "Server/Orvane/Payloads/ContainerStatus.h"
#include "Server/Orvane/Payloads/ContainerType.h"
#include "Server/Orvane/Payloads/Data.h"
#include "Server/Orvane/Payloads/Links.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <set>
#include <string>

namespace Orvane::Payloads {

/// One folder of the service, with the user's membership and permissions in it. A value; may be
/// read from several threads at once. A document shares its folders with its copies and with
/// callers of `getFolder`: a change to a shared folder is visible to all of them and is not
/// synchronized. Moving a folder copies it.
///
/// References that accessors return are valid until the field is changed or the folder is
/// destroyed.
class QXORVANEDM10_EXPORT FolderData : public Data, public Links {
public:
    /// All fields have their defaults. Such a folder is not valid (see `isValid`).
    FolderData() = default;

    /// Reads one element of "included.folders". If the "type" of the node is not "folders", reads
    /// only "id", "type" and "links.self". If a key is missing, its field keeps its default. Where
    /// text is expected, a number or boolean is converted to text; any other value of the wrong
    /// type, including null, leaves the default too, except as noted.
    explicit FolderData(const Qx::JSONNode& node);

    /// Copies every field.
    FolderData(const FolderData& other) = default;

    /// Copies everything except the link and `membership`, which the target keeps. If it throws,
    /// the target may be only partly assigned.
    FolderData& operator=(const FolderData& other);

    /// Returns "folders".
    static std::string dataType();

    /// The value of "name"; empty by default.
    const std::string& name() const;
    /// Sets the name.
    void name(const std::string& name);

    /// The value of "parent": the parent's URN; empty by default.
    const std::string& parent() const;
    /// Sets the parent's URN.
    void parent(const std::string& parent);

    /// The value of "visible"; false by default.
    bool visible() const;
    /// Sets whether the folder is visible.
    void visible(bool visible);

    /// The value of "status"; `UNSET` by default, `OTHER` for a folder whose JSON has no status or
    /// an unknown one.
    ContainerStatus status() const;
    /// Sets the status.
    void status(ContainerStatus status);
    /// Sets the status from the service's string; an unknown one sets `OTHER`.
    void status(const std::string& status);

    /// The value of "me.isMember": true only for true or the string "true"; false by default.
    bool isMember() const;
    /// Sets whether the user is a member.
    void setMember(bool isMember);

    /// The value of "me.membership", as the service sent it; empty by default.
    std::string membership() const;
    /// Sets the membership.
    void membership(const std::string& membership);

    /// The elements of "me.allowed-actions", without duplicates, in ascending byte order; empty by
    /// default. An element that is not a string, number or boolean becomes the empty string.
    const std::set<std::string>& allowedActions() const;
    /// Sets the allowed actions.
    void allowedActions(const std::set<std::string>& allowedActions);

    /// The value of "containerType"; `OTHER` by default. Not to be confused with `getType`, the
    /// resource's own type.
    ContainerType type() const;
    /// Sets the container type.
    void type(ContainerType containerType);

    /// Returns true if the allowed actions contain exactly `action`. One lookup in the set.
    bool hasPermission(const std::string& action) const;

    /// Compares id, name, parent, visibility, status, member flag and container type, and nothing else.
    bool operator==(const FolderData& other) const;

    /// Returns true if the folder does not equal a default-constructed one. Always true for a
    /// folder that was read from a node of type "folders".
    bool isValid() const;

private:
    void readStanding(const Qx::JSONNode& me);

    std::string name_;
    std::string parent_;
    bool visible_ = false;
    ContainerStatus status_ = ContainerStatus::UNSET;
    bool isMember_ = false;
    std::string membership_;
    std::set<std::string> allowedActions_;
    ContainerType containerType_ = ContainerType::OTHER;
};

} // namespace Orvane::Payloads

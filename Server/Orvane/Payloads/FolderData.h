#pragma once

#include "Server/Orvane/Payloads/ContainerStatus.h"
#include "Server/Orvane/Payloads/ContainerType.h"
#include "Server/Orvane/Payloads/Data.h"
#include "Server/Orvane/Payloads/Links.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <set>
#include <string>

namespace Orvane::Payloads {

/// One folder of the service, with the calling user's standing in it. A value; may be read from several
/// threads at once. Documents share their folders: a change to a shared one is seen by all who hold it, and
/// nothing guards it. Moving a folder copies it.
///
/// References that accessors give are good until the field is changed or the folder destroyed.
class QXORVANEDM10_EXPORT FolderData : public Data, public Links {
public:
    /// Every field at its default. Such a folder is not valid.
    FolderData() = default;

    /// Reads one element of "included.folders". A node whose "type" is not "folders" gives its "id", "type"
    /// and "links.self" alone; a key that is missing leaves its field as it is by default. Where a text is
    /// expected a number or boolean is taken as one; other values of the wrong kind, null included, leave the
    /// field too, but where told otherwise.
    explicit FolderData(const Qx::JSONNode& node);

    FolderData(const FolderData& other) = default;

    /// Copies what identifies and describes the folder and what may be done with it, but neither its link nor the
    /// caller's membership: those of the target stay. If it throws, the target holds part of the source.
    FolderData& operator=(const FolderData& other);

    /// "folders".
    static std::string dataType();

    /// The key "name"; empty by default.
    const std::string& name() const;
    void name(const std::string& name);

    /// The key "parent": the parent's URN; empty by default.
    const std::string& parent() const;
    void parent(const std::string& parent);

    /// The key "visible"; false by default.
    bool visible() const;
    void visible(bool visible);

    /// The key "status"; `UNSET` by default, `OTHER` for a folder whose JSON has none or another text.
    ContainerStatus status() const;
    void status(ContainerStatus status);
    /// The service's text; one that is not known gives `OTHER`.
    void status(const std::string& status);

    /// The key "me.isMember": true only for "true" or true; false by default.
    bool isMember() const;
    void setMember(bool isMember);

    /// The key "me.membership", as the service sent it; empty by default.
    std::string membership() const;
    void membership(const std::string& membership);

    /// The key "me.allowed-actions", each once, in ascending order of bytes; empty by
    /// default. An element that is no text, number or boolean counts as the empty text.
    const std::set<std::string>& allowedActions() const;
    void allowedActions(const std::set<std::string>& allowedActions);

    /// The key "containerType"; `OTHER` by default. The resource's own kind is `getType`.
    ContainerType type() const;
    void type(ContainerType containerType);

    /// True if `action` is among the allowed actions, spelled just so. One search of the set.
    bool hasPermission(const std::string& action) const;

    /// Compares id, name, parent, visibility, status, member flag and container type, and nothing else.
    bool operator==(const FolderData& other) const;

    /// True if the folder differs, as `==` sees it, from a default-constructed one. One that was read from a
    /// node of type "folders" always does.
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

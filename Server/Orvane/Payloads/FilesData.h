#pragma once

#include "Server/Orvane/Payloads/ContainerType.h"
#include "Server/Orvane/Payloads/Data.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <optional>
#include <string>

namespace Orvane::Payloads {

/// One file of the service. A plain value; may be read from several threads at once.
class QXORVANEDM10_EXPORT FilesData : public Data {
public:
    /// Reads one element of "included.files". A node whose "type" is not "files" gives its "id" and "type"
    /// alone; a key that is missing leaves its field as it is by default. Where a text is
    /// expected a number or boolean is taken as one; other values of the wrong kind, null included, leave the
    /// field too, but where told otherwise.
    explicit FilesData(const Qx::JSONNode& node);

    /// "files".
    static std::string dataType();

    /// The key "name"; empty by default.
    std::wstring getName() const;

    /// The id of what holds the file; empty by default. Where the parent is a project it is "project.id",
    /// else "parent.id"; for a configuration design that says which project it was configured for, it is
    /// "attributes.configuredDesignProjectId.value", or empty if that is null, an object or an array.
    std::string getParentId() const;

    /// The key "parent.type"; `OTHER` by default. A configuration design keeps the type of its "parent", also
    /// where its parent id is that of another project.
    ContainerType getParentType() const;
    /// Leaves the parent id as it is.
    void setParentType(ContainerType parentType);

    /// The key "attributes.subTypes.value"; no value if the file does not carry it, the empty text if it is
    /// null, an object or an array.
    std::optional<std::string> getSubTypes() const;

    /// True if the sub type is exactly "Configuration".
    bool isConfigurationDesign() const;

private:
    // A document looks up the parents of many files, and would copy the id of each.
    friend class FullAssemblyData;

    void readParent(const Qx::JSONNode& node);
    void readAttributes(const Qx::JSONNode& node);

    std::wstring name_;
    std::string parentId_;
    ContainerType parentType_ = ContainerType::OTHER;
    std::optional<std::string> subTypes_;
};

} // namespace Orvane::Payloads

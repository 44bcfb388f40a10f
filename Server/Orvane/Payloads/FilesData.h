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
    /// Reads one element of "included.files". If the "type" of the node is not "files", reads only
    /// "id" and "type". If a key is missing, its field keeps its default. Where text is expected, a
    /// number or boolean is converted to text; any other value of the wrong type, including null,
    /// leaves the default too, except as noted.
    explicit FilesData(const Qx::JSONNode& node);

    /// Returns "files".
    static std::string dataType();

    /// The value of "name"; empty by default.
    std::wstring getName() const;

    /// The id of the folder or project that contains the file; empty by default. It is "project.id"
    /// if the parent is a project, and "parent.id" otherwise. For a configuration design that names
    /// the project it was configured for, it is "attributes.configuredDesignProjectId.value"
    /// instead, or empty if that is null, an object or an array.
    std::string getParentId() const;

    /// The value of "parent.type"; `OTHER` by default. For a configuration design it is the type of
    /// its "parent", even if its parent id is that of another project.
    ContainerType getParentType() const;
    /// Does not change the parent id.
    void setParentType(ContainerType parentType);

    /// The value of "attributes.subTypes.value"; nothing if the key is missing, the empty string if
    /// it is null, an object or an array.
    std::optional<std::string> getSubTypes() const;

    /// Returns true if the subtype is exactly "Configuration".
    bool isConfigurationDesign() const;

private:
    // Lets a document look up the parents of many files without copying each id.
    friend class FullAssemblyData;

    void readParent(const Qx::JSONNode& node);
    void readAttributes(const Qx::JSONNode& node);

    std::wstring name_;
    std::string parentId_;
    ContainerType parentType_ = ContainerType::OTHER;
    std::optional<std::string> subTypes_;
};

} // namespace Orvane::Payloads

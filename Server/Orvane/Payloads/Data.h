#pragma once

#include "Server/Orvane/qxorvanedm10_export.h"

#include <string>

namespace Qx {
class JSONNode;
}

namespace Orvane::Payloads {

/// The identity that every JSON resource of the service has. A plain value; may be read from
/// several threads at once. Moving leaves the strings of the source empty.
class QXORVANEDM10_EXPORT Data {
public:
    /// Both strings are empty.
    Data() = default;

    /// Reads `node` as `init` does. The string of a missing key is empty.
    explicit Data(const Qx::JSONNode& node);

    /// Reads "id" and "type". The string of a missing key is unchanged.
    void init(const Qx::JSONNode& node);

    /// The value of "id".
    std::string getId() const;
    /// Sets the id.
    void setId(const std::string& id);

    /// The value of "type": the kind of resource as the service spells it, such as "files".
    std::string getType() const;
    /// Sets the type.
    void setType(const std::string& type);

private:
    // Lets a document compare the ids of many records without copying each.
    friend class FullAssemblyData;

    std::string id_;
    std::string type_;
};

} // namespace Orvane::Payloads

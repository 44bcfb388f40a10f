#pragma once

#include "Server/Orvane/qxorvanedm10_export.h"

#include <string>

namespace Qx {
class JSONNode;
}

namespace Orvane::Payloads {

/// The identity that every JSON resource of the service carries. A plain value; may be read from several
/// threads at once. Moving leaves the source's texts empty.
class QXORVANEDM10_EXPORT Data {
public:
    /// Both texts empty.
    Data() = default;

    /// Reads `node` as `init` does. A key that the node lacks leaves its text empty.
    explicit Data(const Qx::JSONNode& node);

    /// Reads "id" and "type". A key that `node` lacks leaves its text as it was.
    void init(const Qx::JSONNode& node);

    /// The key "id".
    std::string getId() const;
    void setId(const std::string& id);

    /// The key "type": the kind of resource as the service spells it, such as "files".
    std::string getType() const;
    void setType(const std::string& type);

private:
    // A document compares the ids of many records, and would copy each.
    friend class FullAssemblyData;

    std::string id_;
    std::string type_;
};

} // namespace Orvane::Payloads

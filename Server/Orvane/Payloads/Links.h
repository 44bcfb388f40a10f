#pragma once

#include "Server/Orvane/qxorvanedm10_export.h"

#include <string>

namespace Qx {
class JSONNode;
}

namespace Orvane::Payloads {

/// A resource's link to itself. A plain value; may be read from several threads at once.
/// Moving leaves the link of the source empty.
class QXORVANEDM10_EXPORT Links {
public:
    /// No link.
    Links() = default;

    /// Reads `node` as `init` does.
    explicit Links(const Qx::JSONNode& node);

    /// Reads "self". If `node` lacks it, the link is unchanged.
    void init(const Qx::JSONNode& node);

    /// The value of "self"; empty if there is none.
    std::string getHref() const;
    /// Sets the link.
    void setHref(const std::string& href);

private:
    std::string href_;
};

} // namespace Orvane::Payloads

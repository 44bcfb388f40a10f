#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <string>

namespace Qx {

/// Tells whether an operation that takes one has succeeded, and if not, why. A plain value.
class QXBASECORE10_EXPORT Status {
public:
    /// Success.
    Status() = default;

    /// A failure, with its reason in one line for a person.
    static Status failure(std::string reason);

    bool isOk() const;

    /// Empty on success.
    const std::string& reason() const;

private:
    bool isOk_ = true;
    std::string reason_;
};

} // namespace Qx

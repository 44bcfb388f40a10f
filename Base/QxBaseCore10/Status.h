#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <string>

namespace Qx {

/// Says whether an operation succeeded and, if not, why. A plain value.
class QXBASECORE10_EXPORT Status {
public:
    /// Success.
    Status() = default;

    /// Returns a failure with a one-line, human-readable reason.
    static Status failure(std::string reason);

    /// Returns true on success.
    bool isOk() const;

    /// Empty on success.
    const std::string& reason() const;

private:
    bool isOk_ = true;
    std::string reason_;
};

} // namespace Qx

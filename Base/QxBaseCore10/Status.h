#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <string>
#include <string_view>

namespace Qx {

/// Tells why an operation that takes one has failed. Without a reason it stands for success. A plain value.
class QXBASECORE10_EXPORT Status {
public:
    /// True as long as there is no reason.
    bool isOk() const;

    /// One line for a person; empty on success.
    const std::string& reason() const;
    /// An empty reason stands for success again.
    void setReason(std::string_view reason);

private:
    std::string reason_;
};

} // namespace Qx

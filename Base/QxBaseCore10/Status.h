#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <string>
#include <string_view>

namespace Qx {

/// Tells why an operation that takes one has failed. Without a reason it stands for success.
class QXBASECORE10_EXPORT Status {
public:
    bool isOk() const;

    /// One line for a person; empty on success.
    const std::string& reason() const;
    void setReason(std::string_view reason);

private:
    std::string reason_;
};

} // namespace Qx

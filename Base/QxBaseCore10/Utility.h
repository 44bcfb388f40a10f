#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

/// Process-wide switches. May be read and set from several threads at once.
namespace Qx::Utility {

/// Whether a full assembly is asked for with the details of projects that it reaches only indirectly. Off at
/// first.
QXBASECORE10_EXPORT bool indirectXRefProjectDetailsEnabled();
QXBASECORE10_EXPORT void setIndirectXRefProjectDetailsEnabled(bool enabled);

} // namespace Qx::Utility

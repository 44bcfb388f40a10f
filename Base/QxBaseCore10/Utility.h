#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

/// Process-wide switches. May be read and set from several threads at once.
namespace Qx::Utility {

/// Whether requests for a full assembly also ask for details of the projects that it references
/// only indirectly. Off by default.
QXBASECORE10_EXPORT bool indirectXRefProjectDetailsEnabled();
/// Turns those details on or off.
QXBASECORE10_EXPORT void setIndirectXRefProjectDetailsEnabled(bool enabled);

} // namespace Qx::Utility

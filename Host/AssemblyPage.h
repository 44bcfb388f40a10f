#pragma once

#include "Host/AssemblyMap.h"
#include "Host/Report.h"

#include <string>

namespace OrvaneHost {

/// Returns the assembly as a self-contained HTML page in UTF-8, in which no script but its own can
/// run. Names are shortened to 200 columns.
std::string toHTML(const AssemblyMap& map, const Report& report);

} // namespace OrvaneHost

#pragma once

#include "Host/AssemblyMap.h"
#include "Host/Report.h"

#include <string>

namespace OrvaneHost {

/// The assembly as a page of HTML in UTF-8 that needs nothing else, and of which nothing is executed but its own
/// script. Names are shortened to 200 columns.
std::string toHTML(const AssemblyMap& map, const Report& report);

} // namespace OrvaneHost

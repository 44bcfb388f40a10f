#pragma once

#include "Base/QxBaseCore10/Analytics.h"
#include "Host/Report.h"

#include <vector>

namespace Orvane::Payloads {
class FullAssemblyData;
class FullAssemblyDataV3;
} // namespace Orvane::Payloads

namespace OrvaneHost {

/// Reports what a full assembly contains, and the usage events that were tracked for it.
Report reportAssembly(const Orvane::Payloads::FullAssemblyDataV3& assembly,
                      const std::vector<Qx::Analytics::Report>& events);

/// Reports what the answer to an access request contains.
Report reportAccess(const Orvane::Payloads::FullAssemblyData& assembly);

} // namespace OrvaneHost

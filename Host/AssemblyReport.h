#pragma once

#include "Base/QxBaseCore10/Analytics.h"
#include "Host/Report.h"

#include <vector>

namespace Orvane::Payloads {
class FullAssemblyData;
class FullAssemblyDataV3;
} // namespace Orvane::Payloads

namespace OrvaneHost {

/// What a full assembly holds and which usage events it was reported with.
Report reportAssembly(const Orvane::Payloads::FullAssemblyDataV3& assembly,
                      const std::vector<Qx::Analytics::Report>& events);

/// What the answer to an access request holds.
Report reportAccess(const Orvane::Payloads::FullAssemblyData& assembly);

} // namespace OrvaneHost

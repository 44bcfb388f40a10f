#pragma once

#include "Benchmarks/PlainAssembly.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <cstddef>

namespace OrvaneBenchmarks {

/// A checksum over every field of every record: equal for what was read alike, whichever road read it. The library's
/// document tells neither its own link nor the order of its projects, so these are left out.
std::size_t checksum(const PlainAssembly& assembly);
std::size_t checksum(const Orvane::Payloads::FullAssemblyDataV3& document);

} // namespace OrvaneBenchmarks

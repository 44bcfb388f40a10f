#pragma once

#include "Base/QxBase10/HTTPResponse.h"
#include "Benchmarks/PlainAssembly.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <nlohmann/json.hpp>

// The ways from a response's body to records, all of which give the same. Each throws if the body is not JSON.
namespace OrvaneBenchmarks {

/// The library's way.
Orvane::Payloads::FullAssemblyDataV3 readWithLibrary(const Qx::HTTPResponse& response);

/// One pass over the values of simdjson's DOM, written by hand for these records alone: what the library's way is
/// measured by. It throws if a value is of an unexpected kind.
PlainAssembly readByHand(const Qx::HTTPResponse& response);

/// What many would write: nlohmann::json, read by reference.
PlainAssembly readWithNlohmann(const Qx::HTTPResponse& response);

/// The second half of the last, for any JSON whatever.
PlainAssembly readAssembly(const nlohmann::json& root);

} // namespace OrvaneBenchmarks

#pragma once

#include "Base/QxBase10/HTTPResponse.h"
#include "Benchmarks/PlainAssembly.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <nlohmann/json.hpp>

// Different ways to read a response's body into records, all with the same result. Each throws if
// the body is not JSON.
namespace OrvaneBenchmarks {

/// Reads with the library.
Orvane::Payloads::FullAssemblyDataV3 readWithLibrary(const Qx::HTTPResponse& response);

/// Reads in one pass over the values of simdjson's DOM, written by hand for just these records: the
/// baseline for the library. Throws if a value is of an unexpected type.
PlainAssembly readByHand(const Qx::HTTPResponse& response);

/// Reads with nlohmann::json, by reference, as typical application code would.
PlainAssembly readWithNlohmann(const Qx::HTTPResponse& response);

/// The second half of `readWithNlohmann`: reads records from any JSON.
PlainAssembly readAssembly(const nlohmann::json& root);

} // namespace OrvaneBenchmarks

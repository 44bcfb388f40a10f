#pragma once

#include "Base/QxBase10/HTTPResponse.h"
#include "Benchmarks/PlainAssembly.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

// The roads from the body of an answer to records, all of which give the same. Each throws if the body is no JSON.
namespace OrvaneBenchmarks {

/// The library's road.
Orvane::Payloads::FullAssemblyDataV3 readWithLibrary(const Qx::HTTPResponse& response);

/// One pass over the values of simdjson's DOM, written by hand for these records alone: what the library's road is
/// measured by.
PlainAssembly readByHand(const Qx::HTTPResponse& response);

/// What many would write: nlohmann::json, read by reference.
PlainAssembly readWithNlohmann(const Qx::HTTPResponse& response);

} // namespace OrvaneBenchmarks

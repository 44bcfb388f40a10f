#pragma once

#include "Benchmarks/PlainAssembly.h"
#include "Tests/Support/Answers.h"

// The answers expected from the library's documents, computed without the library: each query walks
// over the records.
namespace OrvaneFuzz {

/// Reads a body with nlohmann's parser. Returns nothing if it is not JSON.
std::optional<OrvaneBenchmarks::PlainAssembly> readPlainly(const std::string& body);

/// Returns the ids of some records in the assembly, and some ids that may belong to no record.
std::vector<std::string> idsOf(const OrvaneBenchmarks::PlainAssembly& assembly);

/// Return what `answersOf` must return for a V2 document and for a V3 document, with the event for
/// the workflow "workflow".
Json firstAnswers(const OrvaneBenchmarks::PlainAssembly& assembly, const std::vector<std::string>& ids);
Json answersV3(const OrvaneBenchmarks::PlainAssembly& assembly, const std::vector<std::string>& ids);

} // namespace OrvaneFuzz

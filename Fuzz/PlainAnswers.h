#pragma once

#include "Benchmarks/PlainAssembly.h"
#include "Tests/Support/Answers.h"

// What the library's documents must answer, worked out without it: each query as a walk over the records.
namespace OrvaneFuzz {

/// Of a body that is JSON, as nlohmann's parser reads it; nothing if it is not.
std::optional<OrvaneBenchmarks::PlainAssembly> readPlainly(const std::string& body);

/// Some ids of what the assembly holds, and some that may be nobody's.
std::vector<std::string> idsOf(const OrvaneBenchmarks::PlainAssembly& assembly);

/// What `answersOf` gives for documents of either generation, and the event for the workflow "workflow".
Json firstAnswers(const OrvaneBenchmarks::PlainAssembly& assembly, const std::vector<std::string>& ids);
Json answersV3(const OrvaneBenchmarks::PlainAssembly& assembly, const std::vector<std::string>& ids);

} // namespace OrvaneFuzz

#pragma once

#include <random>
#include <string>

namespace OrvaneFuzz {

/// Returns the JSON in `body` with some of its values copied over others, repeated, swapped or
/// removed, so that records of all kinds come to share ids. If `body` is not JSON, and sometimes if
/// it is, changes one byte instead.
std::string mutateValues(std::string body, std::mt19937& random);

} // namespace OrvaneFuzz

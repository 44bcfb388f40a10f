#pragma once

#include <random>
#include <string>

namespace OrvaneFuzz {

/// The JSON of a body with some of its values copied over others, repeated, exchanged or left out, so that records of
/// any kind come to share ids; text that is not JSON stays as it is.
std::string mutateValues(const std::string& body, std::mt19937& random);

} // namespace OrvaneFuzz

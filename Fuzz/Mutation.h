#pragma once

#include <random>
#include <string>

namespace OrvaneFuzz {

/// The JSON of a body with some of its values copied over others, repeated, exchanged or left out, so that records of
/// any kind come to share ids. Of text that is not JSON, and now and then of JSON too, one byte changes.
std::string mutateValues(std::string body, std::mt19937& random);

} // namespace OrvaneFuzz

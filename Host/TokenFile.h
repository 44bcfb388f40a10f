#pragma once

#include <chrono>
#include <string>

namespace OrvaneHost {

/// Returns the user's token, from the file or, if `tokenFile` is empty, from the environment; empty
/// if the environment contains none. The token is one word of visible ASCII characters. Throws
/// `std::runtime_error`, with a one-line message, if it is not, or if the file can't be read, is
/// larger than 64 KiB, is a device, or is a pipe that is not closed in time.
std::string readToken(const std::string& tokenFile, std::chrono::seconds timeout);

} // namespace OrvaneHost

#pragma once

#include <chrono>
#include <string>

namespace OrvaneHost {

/// The user's token, from the file or, if its name is empty, from the environment; empty if there is none there. It is
/// one word of visible ASCII characters. Throws `std::runtime_error` with a message of one line if it is not, or if the
/// file can't be read, is larger than 64 KiB, is a device, or is a pipe that does not end in time.
std::string readToken(const std::string& tokenFile, std::chrono::seconds timeout);

} // namespace OrvaneHost

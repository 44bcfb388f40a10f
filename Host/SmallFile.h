#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>

namespace OrvaneHost {

/// Returns the bytes of a file, or of a named pipe on systems that have them. Throws
/// `std::runtime_error` with the reason if it can't be read, is larger than `maxBytes`, is a
/// device, or is a pipe that is not closed in time.
std::string readSmallFile(const std::filesystem::path& path, std::size_t maxBytes, std::chrono::seconds timeout);

} // namespace OrvaneHost

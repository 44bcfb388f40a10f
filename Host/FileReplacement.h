#pragma once

#include <filesystem>
#include <string_view>

namespace OrvaneHost {

/// Writes a file completely or not at all: if that fails or is interrupted, a file that was there
/// before is unchanged. A symbolic link to a file is followed; what is not a regular file, such as a pipe, is
/// written to directly. Throws `std::system_error`.
void replaceFile(const std::filesystem::path& path, std::string_view content);

} // namespace OrvaneHost

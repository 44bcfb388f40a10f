#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace Orvane::Testing::Detail {

/// Returns the path in quotes, for a one-line message.
std::string shown(const std::filesystem::path& path);

/// Returns the paths in `folder` that have that extension, sorted by name; none if there is no such
/// folder. Throws `std::runtime_error` with a one-line message if the folder can't be read.
std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder, std::string_view extension);

/// Returns the contents of a file. Throws `std::runtime_error`, with a one-line message that says
/// why, if it can't be read or is not a regular file.
std::string readFile(const std::filesystem::path& path);

/// Writes the bytes to a new file and returns true. If the path already exists, writes nothing and
/// returns false. Throws as `readFile` does, and then leaves no file.
bool createFile(const std::filesystem::path& path, std::string_view bytes);

} // namespace Orvane::Testing::Detail

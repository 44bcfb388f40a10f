#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace Orvane::Testing::Detail {

/// The files in `folder` with that extension, in the order of their names; none if there is no such folder. Throws
/// `std::runtime_error` with a message of one line if it can't be read, or holds something else of such a name.
std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder, std::string_view extension);

/// The bytes of a file. Throws `std::runtime_error` with a message of one line that says why it can't be read.
std::string readFile(const std::filesystem::path& path);

/// Writes the bytes into a new file, or in place of what it holds. Throws as `readFile` does.
void writeFile(const std::filesystem::path& path, std::string_view bytes);

} // namespace Orvane::Testing::Detail

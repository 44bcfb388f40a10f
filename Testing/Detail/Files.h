#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace Orvane::Testing::Detail {

/// The path in quotes, for a message of one line.
std::string shown(const std::filesystem::path& path);

/// What has a name with that extension in `folder`, in the order of the names; none if there is no such folder. Throws
/// `std::runtime_error` with a message of one line if it can't be read.
std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder, std::string_view extension);

/// The bytes of a file. Throws `std::runtime_error` with a message of one line that says why it can't be read, as what
/// is no file can't.
std::string readFile(const std::filesystem::path& path);

/// Writes the bytes into a new file, or nothing and returns false if there is something of that name. Throws as
/// `readFile` does, and then leaves no file.
bool createFile(const std::filesystem::path& path, std::string_view bytes);

} // namespace Orvane::Testing::Detail

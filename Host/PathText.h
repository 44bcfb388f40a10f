#pragma once

#include <filesystem>
#include <string>

namespace OrvaneHost {

/// Converts UTF-8 to a path. A plain string would be interpreted in the system's code page, if it
/// has one.
inline std::filesystem::path pathOf(const std::string& text) {
    return std::u8string(text.begin(), text.end());
}

} // namespace OrvaneHost

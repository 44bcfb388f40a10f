#pragma once

#include <filesystem>
#include <string>

namespace OrvaneHost {

/// A path in UTF-8. A plain text would be taken to be in the code page of the system where there are such.
inline std::filesystem::path pathOf(const std::string& text) {
    return std::u8string(text.begin(), text.end());
}

} // namespace OrvaneHost

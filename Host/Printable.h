#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace OrvaneHost {

/// Returns the UTF-8 text with U+FFFD in place of all characters that could mislead on a terminal:
/// control characters, line breaks, changes of the writing direction and invisible characters.
std::string printable(std::string_view text);

/// The same, but a text wider than `width` columns is cut to that width and ends with "…".
std::string shortened(std::string_view text, std::size_t width);

/// Returns how many columns a UTF-8 text takes on a terminal.
std::size_t displayWidth(std::string_view text);

/// Returns the JSON with the characters that `printable` replaces escaped. The result is valid
/// UTF-8 even if `json` is not.
std::string escapeDeceptive(std::string_view json);

/// Returns a URN or link from the user with "***" in place of everything before its last "@", since
/// a password may contain any character.
std::string withoutCredentials(const std::string& urnOrLink);

} // namespace OrvaneHost

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace OrvaneHost {

/// The UTF-8 text with U+FFFD for whatever could play tricks on a terminal: control characters, line breaks, changes of
/// the writing direction and invisible characters.
std::string printable(std::string_view text);

/// The same of a text that may be long, which ends with "…" if it takes more than `width` columns.
std::string shortened(std::string_view text, std::size_t width);

/// How many columns of a terminal a UTF-8 text takes.
std::size_t displayWidth(std::string_view text);

/// JSON with such characters escaped, as UTF-8 whatever it was.
std::string withoutTricks(std::string_view json);

/// What the user named, a URN or a link, with "***" for all before its last "@": a password may hold any sign.
std::string withoutCredentials(const std::string& urnOrLink);

} // namespace OrvaneHost

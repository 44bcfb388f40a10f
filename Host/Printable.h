#pragma once

#include <string>
#include <string_view>

namespace OrvaneHost {

/// The UTF-8 text with U+FFFD for whatever could play tricks on a terminal: control characters, line breaks and
/// changes of the writing direction included.
std::string printable(std::string_view text);

/// What the user named, a URN or a link, with "***" for all before its last "@": a password may hold any sign.
std::string withoutCredentials(const std::string& urnOrLink);

} // namespace OrvaneHost

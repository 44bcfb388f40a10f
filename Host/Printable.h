#pragma once

#include <string>
#include <string_view>

namespace OrvaneHost {

/// The UTF-8 text with U+FFFD for whatever could play tricks on a terminal: control characters, line breaks and
/// changes of the writing direction included.
std::string printable(std::string_view text);

/// `text` with "***" for whatever may be a user name and password in a URL in it: all from "://" to the last "@" of the
/// word, since a password may hold any other sign.
std::string withoutCredentials(std::string_view text);

} // namespace OrvaneHost

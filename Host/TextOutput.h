#pragma once

#include <cstdio>
#include <string_view>

namespace OrvaneHost {

/// Writes UTF-8 to a standard stream, so that a terminal shows it. False, with the reason in `errno`, if it can't be
/// written.
bool writeText(std::FILE* stream, std::string_view text);

bool isTerminal(std::FILE* stream);

/// Whether the stream is a terminal that understands escape sequences.
bool takesEscapeSequences(std::FILE* stream);

} // namespace OrvaneHost

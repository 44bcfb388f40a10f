#pragma once

#include <cstdio>
#include <string_view>

namespace OrvaneHost {

/// Writes UTF-8 to a standard stream so that a terminal displays it correctly. Returns false, with
/// the reason in `errno`, if writing fails.
bool writeText(std::FILE* stream, std::string_view text);

/// Returns whether the stream is a terminal.
bool isTerminal(std::FILE* stream);

/// Returns whether the stream is a terminal that understands escape sequences.
bool takesEscapeSequences(std::FILE* stream);

} // namespace OrvaneHost

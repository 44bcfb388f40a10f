#pragma once

#include <string>

namespace OrvaneHost {

/// Writes to standard output. Throws `std::runtime_error` if that can't be written.
void printOutput(const std::string& text);

/// Likewise, one line, bold on a terminal unless the user's NO_COLOR is set.
void printHeading(const std::string& line);

/// Lets what was written come out. Throws as `printOutput` does.
void flushOutput();

/// Writes one line to standard error, after the program's name, which is red where a heading would be bold, without
/// characters that could mislead on a terminal.
void printError(const std::string& line);

} // namespace OrvaneHost

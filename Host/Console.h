#pragma once

#include <string>

namespace OrvaneHost {

/// Writes to standard output. Throws `std::runtime_error` if writing fails.
void printOutput(const std::string& text);

/// Writes one line to standard output, in bold on a terminal unless NO_COLOR is set.
void printHeading(const std::string& line);

/// Flushes standard output. Throws as `printOutput` does.
void flushOutput();

/// Writes one line to standard error, after the program's name. Characters that could mislead on a
/// terminal are replaced. The name is in red where a heading would be in bold.
void printError(const std::string& line);

} // namespace OrvaneHost

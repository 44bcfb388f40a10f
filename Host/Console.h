#pragma once

#include <string>

namespace OrvaneHost {

/// Writes to standard output. Throws `std::runtime_error` if that can't be written.
void printOutput(const std::string& text);

/// Lets what was written come out. Throws as `printOutput` does.
void flushOutput();

/// Writes one line to standard error, after the program's name, without characters that could mislead on a terminal.
void printError(const std::string& line);

} // namespace OrvaneHost

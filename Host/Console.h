#pragma once

#include <string>

namespace OrvaneHost {

/// Writes to standard output. Throws `std::runtime_error` if that can't be written.
void printOutput(const std::string& text);

/// Lets what was written come out. Throws as `printOutput` does.
void flushOutput();

/// Writes one line to standard error, behind the program's name, free of whatever could play tricks on a terminal.
void printError(const std::string& line);

} // namespace OrvaneHost

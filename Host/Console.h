#pragma once

#include <string>

namespace OrvaneHost {

/// Writes to standard output and flushes. Throws `std::runtime_error` if that can't be written.
void printOutput(const std::string& text);

/// Writes one line to standard error, behind the program's name, free of whatever could play tricks on a terminal.
void printError(const std::string& line);

} // namespace OrvaneHost

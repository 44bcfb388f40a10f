#pragma once

#include <string>
#include <vector>

// What the program gets from the system, and what it sets up before it runs a command.
namespace OrvaneHost {

/// Returns the arguments after the program's name, in UTF-8.
std::vector<std::string> argumentsInUTF8(int argc, const char* const* argv);

/// Opens each closed standard stream as a read-only file, so that writing to it fails. Otherwise
/// the next file or connection would get its descriptor, and output would be written into it.
void openClosedStandardStreams();

/// Hides the program's memory from the user's other programs, and prevents core dumps, as far as
/// the system allows: both would reveal the user's token.
void keepMemoryPrivate();

/// Makes the program end silently once nobody reads its output, and makes writing a file beyond the
/// size limit fail like any other write, on systems that have signals for these.
void setSignals();

} // namespace OrvaneHost

#pragma once

#include <string>
#include <vector>

// What the system gives the program, and what is set to rights before a command runs.
namespace OrvaneHost {

/// The arguments that follow the program's name, in UTF-8.
std::vector<std::string> argumentsInUTF8(int argc, const char* const* argv);

/// Opens each standard stream that is closed as a file that can only be read. Otherwise the next file or connection
/// would get its number, and be written into; so writing fails instead.
void occupyStandardStreams();

/// Keeps what a crash leaves behind, and the memory itself, from the user's other programs, as far as the system can:
/// both hold the user's token.
void keepMemoryPrivate();

/// Lets the program end without a message when nobody reads its output any more, and lets a file that would be too
/// large be a failure like others, where the system has signals for these.
void setSignals();

} // namespace OrvaneHost

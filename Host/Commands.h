#pragma once

#include "Host/CommandLine.h"

namespace OrvaneHost {

/// Runs the command and prints what it found on standard output. For each failed request it prints one line
/// on standard error. Gives the exit status: 0, or 1 if a request failed. Throws `std::runtime_error` with a
/// message of one line for what keeps the command from running at all.
int runCommand(const CommandLine& commandLine);

} // namespace OrvaneHost

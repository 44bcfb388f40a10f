#pragma once

#include "Host/CommandLine.h"

namespace OrvaneHost {

/// Runs the command, and prints its results to standard output and one line for each failed request
/// to standard error. Returns the exit status: 0, or 1 if a request failed. Throws
/// `std::runtime_error`, with a one-line message, if the command can't run at all.
int runCommand(const CommandLine& commandLine);

} // namespace OrvaneHost

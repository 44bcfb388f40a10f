#pragma once

#include <chrono>
#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace OrvaneHost {

/// What the user has requested.
struct CommandLine {
    enum class Command { FOLDER, ASSEMBLY, ACCESS, SERVE };

    Command command = Command::FOLDER;
    std::vector<std::string> urns; ///< One; for `FOLDER`, at least one URN or link; for `SERVE`, none.

    std::string service;   ///< Empty for the local service inside the program.
    std::string v3Service; ///< Empty for the default: `service` followed by "/v3".
    std::string tokenFile; ///< Empty to take the token from the environment.
    std::chrono::seconds timeout = std::chrono::seconds(120);
    std::size_t maxSizeInMiB = 256; ///< Of a single answer.
    std::string recordFolder;       ///< Empty to record nothing.
    bool async = false;
    bool json = false;
    bool verbose = false;
    bool wide = false; ///< Whether long texts are printed in full.

    std::list<std::pair<std::string, std::string>> query;
    std::string algorithm;
    std::string workflow = "command line";
    std::string htmlFile; ///< Empty to print the assembly.

    std::string dataFolder; ///< Empty for the sample project.
    int port = 0;
};

/// Why the program ends instead of running a command.
struct EarlyEnd {
    std::string output; ///< For standard output: help or version.
    std::string error;  ///< For standard error, in one line; empty if nothing is wrong.
};

/// Parses the arguments after the program's name into `commandLine`. Returns why the program ends
/// early, or nothing if there is a command to run.
std::optional<EarlyEnd> parseCommandLine(const std::vector<std::string>& arguments, CommandLine& commandLine);

} // namespace OrvaneHost

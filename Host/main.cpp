#include "Host/Commands.h"
#include "Host/Console.h"
#include "Host/ProcessState.h"

#include <clocale>
#include <csignal>
#include <exception>

namespace {

using namespace OrvaneHost;

constexpr int failed = 1;
constexpr int wrongCommandLine = 2;

int run(int argc, const char* const* argv) {
    CommandLine commandLine;
    if (const auto end = parseCommandLine(argc, argv, commandLine)) {
        printOutput(end->output);
        if (end->error.empty())
            return 0;
        printError(end->error);
        return wrongCommandLine;
    }
    return runCommand(commandLine);
}

} // namespace

int main(int argc, char** argv) {
    occupyStandardStreams();
    keepMemoryPrivate();
    // A closed pipe is to be reported like any other failure, and names have to be measured to be aligned.
    std::signal(SIGPIPE, SIG_IGN);
    std::setlocale(LC_CTYPE, "C.UTF-8");
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        printError(error.what());
        return failed;
    }
}

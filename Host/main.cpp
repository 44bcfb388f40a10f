#include "Host/Commands.h"
#include "Host/Console.h"
#include "Host/ProcessState.h"

#include <clocale>
#include <csignal>
#include <exception>
#include <new>

namespace {

using namespace OrvaneHost;

constexpr int failed = 1;
constexpr int wrongCommandLine = 2;

int run(int argc, const char* const* argv) {
    CommandLine commandLine;
    if (const auto end = parseCommandLine(argc, argv, commandLine)) {
        printOutput(end->output);
        flushOutput();
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
    // Whoever closes a pipe wants no more output, and no message. Nothing but output raises
    // that signal.
    std::signal(SIGPIPE, SIG_DFL);
    std::signal(SIGXFSZ, SIG_IGN);       // A file that would be too large is to be a failure like others.
    std::setlocale(LC_CTYPE, "C.UTF-8"); // Names have to be measured to be aligned.
    try {
        return run(argc, argv);
    } catch (const std::bad_alloc&) {
        printError("there is too little memory; close other programs, or allow this one more");
        return failed;
    } catch (const std::exception& error) {
        printError(error.what());
        return failed;
    }
}

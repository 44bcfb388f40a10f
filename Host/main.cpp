#include "Host/Commands.h"
#include "Host/Console.h"

#include <clocale>
#include <csignal>
#include <exception>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

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

// A standard stream that is closed would hand its number to the next file or connection, which would then be
// written into. As a file that can only be read, it makes writing fail instead.
void occupyStandardStreams() {
    int descriptor = 0;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (descriptor >= 0)
        close(descriptor);
}

// What a crash leaves behind would hold the user's token.
void leaveNoCore() {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

} // namespace

int main(int argc, char** argv) {
    occupyStandardStreams();
    leaveNoCore();
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

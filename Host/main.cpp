#include "Host/Commands.h"
#include "Host/Console.h"
#include "Host/ProcessState.h"

#include <exception>
#include <new>

namespace {

using namespace OrvaneHost;

constexpr int failed = 1;
constexpr int wrongCommandLine = 2;

int run(const std::vector<std::string>& arguments) {
    CommandLine commandLine;
    if (const auto end = parseCommandLine(arguments, commandLine)) {
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
    openClosedStandardStreams();
    keepMemoryPrivate();
    setSignals();
    try {
        return run(argumentsInUTF8(argc, argv));
    } catch (const std::bad_alloc&) {
        printError("not enough memory; close other programs, or allow this program more memory");
        return failed;
    } catch (const std::exception& error) {
        printError(error.what());
        return failed;
    }
}

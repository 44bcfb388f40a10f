#include "Host/Console.h"

#include "Host/Printable.h"
#include "Host/TextOutput.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>
#include <stdexcept>

namespace OrvaneHost {

namespace {

void requireWritten(bool isWritten) {
    if (!isWritten)
        throw std::runtime_error(
            fmt::format("can't write to standard output: {}; check where it leads", std::strerror(errno)));
}

} // namespace

void printOutput(const std::string& text) {
    requireWritten(writeText(stdout, text));
}

void flushOutput() {
    requireWritten(std::fflush(stdout) == 0);
}

void printError(const std::string& line) {
    // Where standard error can't be written there is nobody left to tell.
    static_cast<void>(writeText(stderr, fmt::format("orvane: {}\n", printable(line))));
}

} // namespace OrvaneHost

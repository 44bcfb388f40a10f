#include "Host/Console.h"

#include "Host/Printable.h"
#include "Host/TextOutput.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fmt/format.h>
#include <stdexcept>

namespace OrvaneHost {

namespace {

constexpr const char* bold = "1";
constexpr const char* boldRed = "1;31";

std::string styled(std::FILE* stream, const char* style, const std::string& text) {
    const char* const noColor = std::getenv("NO_COLOR");
    const bool isWanted = !noColor || *noColor == '\0';
    return isWanted && takesEscapeSequences(stream) ? fmt::format("\x1b[{}m{}\x1b[0m", style, text) : text;
}

void requireWritten(bool isWritten) {
    if (!isWritten)
        throw std::runtime_error(
            fmt::format("can't write to standard output: {}; check where it is redirected", std::strerror(errno)));
}

} // namespace

void printOutput(const std::string& text) {
    requireWritten(writeText(stdout, text));
}

void printHeading(const std::string& line) {
    printOutput(styled(stdout, bold, line) + '\n');
}

void flushOutput() {
    requireWritten(std::fflush(stdout) == 0);
}

void printError(const std::string& line) {
    // If standard error can't be written either, there is no way left to report it.
    static_cast<void>(writeText(stderr, fmt::format("{} {}\n", styled(stderr, boldRed, "orvane:"), printable(line))));
}

} // namespace OrvaneHost

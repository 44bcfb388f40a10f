#include "Host/Console.h"

#include "Host/Printable.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>
#include <stdexcept>

namespace OrvaneHost {

void printOutput(const std::string& text) {
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (!written || std::fflush(stdout) != 0)
        throw std::runtime_error(
            fmt::format("can't write to standard output: {}; check where it leads", std::strerror(errno)));
}

void printError(const std::string& line) {
    // Where standard error can't be written there is nobody left to tell.
    static_cast<void>(std::fputs(fmt::format("orvane: {}\n", printable(line)).c_str(), stderr));
}

} // namespace OrvaneHost

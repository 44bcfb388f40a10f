#include "Host/TextOutput.h"

#include <cstdlib>
#include <unistd.h>

namespace OrvaneHost {

bool writeText(std::FILE* stream, std::string_view text) {
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size();
}

bool isTerminal(std::FILE* stream) {
    return isatty(fileno(stream)) == 1;
}

bool takesEscapeSequences(std::FILE* stream) {
    const char* const kind = std::getenv("TERM");
    return isTerminal(stream) && kind && std::string_view(kind) != "dumb";
}

} // namespace OrvaneHost

#include "Host/TextOutput.h"

namespace OrvaneHost {

bool writeText(std::FILE* stream, std::string_view text) {
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size();
}

} // namespace OrvaneHost

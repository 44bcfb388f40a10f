#include "Host/TextOutput.h"

#include "Base/QxBaseCore10/Strings.h"

#include <algorithm>
#include <cerrno>
#include <io.h>
#include <optional>
#include <windows.h>

namespace OrvaneHost {

namespace {

HANDLE handleOf(std::FILE* stream) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}

// Returns nothing if the stream is not a console.
std::optional<DWORD> consoleMode(std::FILE* stream) {
    DWORD mode = 0;
    return GetConsoleMode(handleOf(stream), &mode) == FALSE ? std::nullopt : std::optional(mode);
}

} // namespace

bool isTerminal(std::FILE* stream) {
    return consoleMode(stream).has_value();
}

// Does not enable escape sequences, since the console would stay in that mode after the program has
// ended.
bool takesEscapeSequences(std::FILE* stream) {
    return (consoleMode(stream).value_or(0) & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

// A console interprets bytes in its own code page, but displays wide text unchanged.
bool writeText(std::FILE* stream, std::string_view text) {
    if (!isTerminal(stream))
        return std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    const std::wstring wide = Qx::ToIString(text);
    constexpr std::size_t most = 8'000; // Some consoles accept no more at once.
    for (std::size_t at = 0; at < wide.size();) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(most, wide.size() - at));
        if (WriteConsoleW(handleOf(stream), wide.data() + at, size, &written, nullptr) == FALSE || written == 0) {
            errno = EIO;
            return false;
        }
        at += written;
    }
    return true;
}

} // namespace OrvaneHost

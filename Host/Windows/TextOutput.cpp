#include "Host/TextOutput.h"

#include "Base/QxBaseCore10/Strings.h"

#include <algorithm>
#include <cerrno>
#include <io.h>
#include <windows.h>

namespace OrvaneHost {

// A console takes bytes in a code page of its own, but wide text as it is.
bool writeText(std::FILE* stream, std::string_view text) {
    auto* const console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    DWORD mode = 0;
    if (GetConsoleMode(console, &mode) == FALSE)
        return std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    const std::wstring wide = Qx::ToIString(text);
    constexpr std::size_t most = 8'000; // Of what some consoles take at once.
    for (std::size_t at = 0; at < wide.size();) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(most, wide.size() - at));
        if (WriteConsoleW(console, wide.data() + at, size, &written, nullptr) == FALSE || written == 0) {
            errno = EIO;
            return false;
        }
        at += written;
    }
    return true;
}

} // namespace OrvaneHost

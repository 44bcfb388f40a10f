#include "Host/Printable.h"

#include "Base/QxBaseCore10/Strings.h"

#include <algorithm>

namespace OrvaneHost {

namespace {

bool playsTricks(wchar_t character) {
    const bool isControl = character < 0x20 || (character >= 0x7F && character < 0xA0);
    const bool isLineBreak = character == 0x2028 || character == 0x2029;
    const bool turnsDirection = (character >= 0x202A && character <= 0x202E) ||
                                (character >= 0x2066 && character <= 0x2069) || character == 0x200E ||
                                character == 0x200F || character == 0x061C;
    return isControl || isLineBreak || turnsDirection;
}

} // namespace

std::string printable(std::string_view text) {
    std::wstring wide = Qx::ToIString(text);
    std::replace_if(wide.begin(), wide.end(), playsTricks, L'\uFFFD');
    return Qx::ToHString(wide);
}

std::string withoutCredentials(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    constexpr std::string_view mark = "://";
    std::string clean;
    for (std::size_t start = text.find(mark); start != std::string_view::npos; start = text.find(mark)) {
        start += mark.size();
        const std::string_view word = text.substr(start, text.find_first_of(blanks, start) - start);
        const std::size_t at = word.rfind('@');
        clean.append(text.substr(0, start)).append(at == std::string_view::npos ? "" : "***");
        text.remove_prefix(start + (at == std::string_view::npos ? 0 : at));
    }
    return clean.append(text);
}

} // namespace OrvaneHost

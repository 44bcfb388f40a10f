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

std::string withoutCredentials(const std::string& urnOrLink) {
    const std::size_t at = urnOrLink.rfind('@');
    return at == std::string::npos ? urnOrLink : "***" + urnOrLink.substr(at);
}

} // namespace OrvaneHost

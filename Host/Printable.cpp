#include "Host/Printable.h"

#include "Base/QxBaseCore10/Strings.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cwchar>
#include <fmt/format.h>

namespace OrvaneHost {

namespace {

struct Range {
    wchar_t first;
    wchar_t last;
};

// In order: control characters, the soft hyphen, marks of direction, joiners and other characters without a width,
// variation selectors beyond those of emoji, byte order marks, and tags.
constexpr std::array tricks{Range{0x0000, 0x001F},   Range{0x007F, 0x009F},  Range{0x00AD, 0x00AD},
                            Range{0x034F, 0x034F},   Range{0x061C, 0x061C},  Range{0x115F, 0x1160},
                            Range{0x17B4, 0x17B5},   Range{0x180B, 0x180F},  Range{0x200B, 0x200F},
                            Range{0x2028, 0x202E},   Range{0x2060, 0x206F},  Range{0x3164, 0x3164},
                            Range{0xFEFF, 0xFEFF},   Range{0xFFA0, 0xFFA0},  Range{0xFFF0, 0xFFFB},
                            Range{0x1D173, 0x1D17A}, Range{0xE0000, 0xE0FFF}};

bool playsTricks(wchar_t character) {
    return std::any_of(tricks.begin(), tricks.end(),
                       [=](Range range) { return character >= range.first && character <= range.last; });
}

std::string escapeOf(wchar_t character) {
    const auto point = static_cast<std::uint32_t>(character); // NOLINT(bugprone-signed-char-misuse): it is no char
    return point < 0x10000 ? fmt::format("\\u{:04x}", point)
                           : fmt::format("\\u{:04x}\\u{:04x}", 0xD7C0 + (point >> 10), 0xDC00 + (point & 0x3FF));
}

std::size_t widthOf(wchar_t character) {
    return static_cast<std::size_t>(std::max(wcwidth(character), 0));
}

} // namespace

std::string printable(std::string_view text) {
    std::wstring wide = Qx::ToIString(text);
    std::replace_if(wide.begin(), wide.end(), playsTricks, L'\uFFFD');
    return Qx::ToHString(wide);
}

std::string shortened(std::string_view text, std::size_t width) {
    const std::size_t most = 8 * width; // Of characters, some of which may have no width.
    const std::wstring wide = Qx::ToIString(printable(text));
    std::size_t used = 0;
    std::size_t fitting = 0; // With the sign for more.
    for (std::size_t at = 0; at < wide.size(); ++at) {
        used += widthOf(wide[at]);
        if (used < width && at < most)
            fitting = at + 1;
        if (used > width || at > most)
            return Qx::ToHString(wide.substr(0, fitting) + L'\u2026');
    }
    return Qx::ToHString(wide);
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    for (const wchar_t character : Qx::ToIString(text))
        width += widthOf(character);
    return width;
}

std::string withoutTricks(std::string_view json) {
    const auto isPlain = [](unsigned char byte) { return byte < 0x7F; };
    std::string escaped;
    escaped.reserve(json.size());
    for (auto next = json.begin(); next != json.end();) {
        const auto odd = std::find_if_not(next, json.end(), isPlain);
        escaped.append(next, odd);
        next = std::find_if(odd, json.end(), isPlain);
        // All that is not ASCII stands in strings.
        for (const wchar_t character : Qx::ToIString({odd, next}))
            escaped += playsTricks(character) ? escapeOf(character) : Qx::ToHString(std::wstring(1, character));
    }
    return escaped;
}

std::string withoutCredentials(const std::string& urnOrLink) {
    const std::size_t at = urnOrLink.rfind('@');
    return at == std::string::npos ? urnOrLink : "***" + urnOrLink.substr(at);
}

} // namespace OrvaneHost

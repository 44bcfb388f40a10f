#include "Host/Printable.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fmt/format.h>
#include <utf8proc.h>

namespace OrvaneHost {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// In code point order: control characters, the soft hyphen, direction marks, joiners and other
// characters without a width, variation selectors except those for emoji, byte order marks, and
// tags.
constexpr std::array deceptiveRanges{Range{0x0000, 0x001F},   Range{0x007F, 0x009F},  Range{0x00AD, 0x00AD},
                                     Range{0x034F, 0x034F},   Range{0x061C, 0x061C},  Range{0x115F, 0x1160},
                                     Range{0x17B4, 0x17B5},   Range{0x180B, 0x180F},  Range{0x200B, 0x200F},
                                     Range{0x2028, 0x202E},   Range{0x2060, 0x206F},  Range{0x3164, 0x3164},
                                     Range{0xFEFF, 0xFEFF},   Range{0xFFA0, 0xFFA0},  Range{0xFFF0, 0xFFFB},
                                     Range{0x1D173, 0x1D17A}, Range{0xE0000, 0xE0FFF}};

// Decodes UTF-8, with U+FFFD for each byte that is not part of a character.
std::u32string charactersOf(std::string_view text) {
    const auto* next = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    const auto* const end = next + text.size();
    std::u32string characters;
    characters.reserve(text.size());
    while (next != end) {
        utf8proc_int32_t character = 0;
        const utf8proc_ssize_t size = utf8proc_iterate(next, end - next, &character);
        characters += size > 0 ? static_cast<char32_t>(character) : U'\uFFFD';
        next += std::max<utf8proc_ssize_t>(size, 1);
    }
    return characters;
}

std::string textOf(std::u32string_view characters) {
    std::string text;
    text.reserve(characters.size());
    for (const char32_t character : characters) {
        std::array<utf8proc_uint8_t, 4> bytes{};
        const auto size = utf8proc_encode_char(static_cast<utf8proc_int32_t>(character), bytes.data());
        text.append(bytes.begin(), bytes.begin() + size);
    }
    return text;
}

bool isDeceptive(char32_t character) {
    const bool isNoncharacter = (character & 0xFFFE) == 0xFFFE || (character >= 0xFDD0 && character <= 0xFDEF);
    return isNoncharacter || std::any_of(deceptiveRanges.begin(), deceptiveRanges.end(), [=](Range range) {
               return character >= range.first && character <= range.last;
           });
}

std::string escapeOf(char32_t character) {
    const auto point = static_cast<std::uint32_t>(character);
    return point < 0x10000 ? fmt::format("\\u{:04x}", point)
                           : fmt::format("\\u{:04x}\\u{:04x}", 0xD7C0 + (point >> 10), 0xDC00 + (point & 0x3FF));
}

std::size_t widthOf(char32_t character) {
    return static_cast<std::size_t>(utf8proc_charwidth(static_cast<utf8proc_int32_t>(character)));
}

} // namespace

std::string printable(std::string_view text) {
    std::u32string characters = charactersOf(text);
    std::replace_if(characters.begin(), characters.end(), isDeceptive, U'\uFFFD');
    return textOf(characters);
}

std::string shortened(std::string_view text, std::size_t width) {
    const std::size_t most = 8 * width; // In characters, some of which may have no width.
    const std::u32string characters = charactersOf(printable(text));
    std::size_t used = 0;
    std::size_t fitting = 0; // How many characters fit before the ellipsis.
    for (std::size_t at = 0; at < characters.size(); ++at) {
        used += widthOf(characters[at]);
        if (used < width && at < most)
            fitting = at + 1;
        if (used > width || at > most)
            return textOf(characters.substr(0, fitting) + U'\u2026');
    }
    return textOf(characters);
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    for (const char32_t character : charactersOf(text))
        width += widthOf(character);
    return width;
}

std::string escapeDeceptive(std::string_view json) {
    const auto isPlain = [](unsigned char byte) { return byte < 0x7F; };
    std::string escaped;
    escaped.reserve(json.size());
    for (auto next = json.begin(); next != json.end();) {
        const auto odd = std::find_if_not(next, json.end(), isPlain);
        escaped.append(next, odd);
        next = std::find_if(odd, json.end(), isPlain);
        // In JSON, everything outside ASCII is inside strings.
        for (const char32_t character : charactersOf({odd, next}))
            escaped += isDeceptive(character) ? escapeOf(character) : textOf({&character, 1});
    }
    return escaped;
}

std::string withoutCredentials(const std::string& urnOrLink) {
    const std::size_t at = urnOrLink.rfind('@');
    return at == std::string::npos ? urnOrLink : "***" + urnOrLink.substr(at);
}

} // namespace OrvaneHost

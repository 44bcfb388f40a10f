// Any bytes as UTF-8, and any numbers as wide text.

#include "Base/QxBaseCore10/Strings.h"
#include "Fuzz/Require.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace {

using OrvaneFuzz::require;

constexpr wchar_t replacement = 0xFFFD;

bool isCodePoint(wchar_t point) {
    return point >= 0 && point <= 0x10FFFF && (point < 0xD800 || point > 0xDFFF);
}

// The code points of UTF-8, or nothing if it is not valid.
std::optional<std::wstring> decode(std::string_view utf8) {
    std::wstring decoded;
    for (std::size_t i = 0; i < utf8.size();) {
        const auto first = static_cast<unsigned char>(utf8[i]);
        const std::size_t length = first < 0x80 ? 1 : first < 0xC0 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
        if (length == 0 || first > 0xF7 || i + length > utf8.size())
            return std::nullopt;
        constexpr std::array<int, 5> masks{0, 0x7F, 0x1F, 0x0F, 0x07};
        constexpr std::array<wchar_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
        wchar_t point = first & masks.at(length);
        for (std::size_t next = 1; next < length; ++next) {
            const auto byte = static_cast<unsigned char>(utf8[i + next]);
            if (byte < 0x80 || byte > 0xBF)
                return std::nullopt;
            point = (point << 6) | (byte & 0x3F);
        }
        if (point < least.at(length) || !isCodePoint(point))
            return std::nullopt;
        decoded += point;
        i += length;
    }
    return decoded;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string narrow(reinterpret_cast<const char*>(bytes), size);
    const std::wstring wide = Qx::ToIString(narrow);
    require(std::all_of(wide.begin(), wide.end(), isCodePoint), "wide text holds code points only");
    const std::string back = Qx::ToHString(wide);
    require(Qx::ToIString(back) == wide, "what was converted once round-trips");
    if (const auto decoded = decode(narrow)) {
        require(wide == *decoded, "valid text is converted point by point");
        require(back == narrow, "valid text round-trips");
    } else {
        require(wide.find(replacement) != std::wstring::npos, "invalid text gets the replacement character");
    }

    std::wstring numbers(size / sizeof(wchar_t), L'\0');
    std::memcpy(numbers.data(), bytes, numbers.size() * sizeof(wchar_t));
    std::wstring expected = numbers;
    std::replace_if(
        expected.begin(), expected.end(), [](wchar_t point) { return !isCodePoint(point); }, replacement);
    require(Qx::ToIString(Qx::ToHString(numbers)) == expected, "each invalid number becomes one replacement character");
    return 0;
}

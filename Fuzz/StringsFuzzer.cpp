// Converts arbitrary bytes as if they were UTF-8, and arbitrary numbers as if they were wide text.

#include "Base/QxBaseCore10/Strings.h"
#include "Fuzz/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <locale>
#include <optional>
#include <string>

namespace {

using OrvaneFuzz::require;

constexpr wchar_t replacement = 0xFFFD;

bool isCodePoint(wchar_t point) {
    return point >= 0 && point <= 0x10FFFF && (point < 0xD800 || point > 0xDFFF);
}

// Decodes UTF-8 with the standard library. Returns nothing if the text is not valid.
std::optional<std::wstring> decode(const std::string& utf8) {
    const auto& converter = std::use_facet<std::codecvt<char32_t, char8_t, std::mbstate_t>>(std::locale::classic());
    const std::u8string bytes(utf8.begin(), utf8.end());
    std::u32string points(bytes.size(), U'\0');
    std::mbstate_t state{};
    const char8_t* read = nullptr;
    char32_t* written = nullptr;
    const auto result = converter.in(state, bytes.data(), bytes.data() + bytes.size(), read, points.data(),
                                     points.data() + points.size(), written);
    const std::wstring decoded(points.data(), written);
    if (result != std::codecvt_base::ok || !std::all_of(decoded.begin(), decoded.end(), isCodePoint))
        return std::nullopt;
    return decoded;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string narrow(reinterpret_cast<const char*>(bytes), size);
    const std::wstring wide = Qx::ToIString(narrow);
    require(std::all_of(wide.begin(), wide.end(), isCodePoint), "wide text contains only code points");
    const std::string back = Qx::ToHString(wide);
    require(Qx::ToIString(back) == wide, "converted text round-trips");
    if (const auto decoded = decode(narrow)) {
        require(wide == *decoded, "valid text is converted code point by code point");
        require(back == narrow, "valid text round-trips");
    } else {
        require(wide.find(replacement) != std::wstring::npos, "invalid text becomes replacement characters");
    }
    require(Qx::ToIString("a\xFF" + back) == L"a\uFFFD" + wide, "text next to an invalid byte is preserved");

    std::wstring numbers(size / sizeof(wchar_t), L'\0');
    std::memcpy(numbers.data(), bytes, numbers.size() * sizeof(wchar_t));
    std::wstring expected = numbers;
    std::replace_if(
        expected.begin(), expected.end(), [](wchar_t point) { return !isCodePoint(point); }, replacement);
    require(Qx::ToIString(Qx::ToHString(numbers)) == expected, "each invalid number becomes one replacement character");
    return 0;
}

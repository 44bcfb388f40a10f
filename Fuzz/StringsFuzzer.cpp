// Any bytes as UTF-8, and any numbers as wide text.

#include "Base/QxBaseCore10/Strings.h"
#include "Fuzz/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

using OrvaneFuzz::require;

constexpr wchar_t replacement = 0xFFFD;

bool isCodePoint(wchar_t point) {
    return point >= 0 && point <= 0x10FFFF && (point < 0xD800 || point > 0xDFFF);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string narrow(reinterpret_cast<const char*>(bytes), size);
    const std::wstring wide = Qx::ToIString(narrow);
    require(std::all_of(wide.begin(), wide.end(), isCodePoint), "wide text holds code points only");
    const std::string back = Qx::ToHString(wide);
    require(Qx::ToIString(back) == wide, "what was converted once round-trips");
    if (wide.find(replacement) == std::wstring::npos)
        require(back == narrow, "valid text round-trips");
    else
        require(back != narrow || narrow.find("\xEF\xBF\xBD") != std::string::npos,
                "only text that is invalid, or holds it, gets the replacement character");

    std::wstring numbers(size / sizeof(wchar_t), L'\0');
    std::memcpy(numbers.data(), bytes, numbers.size() * sizeof(wchar_t));
    std::wstring expected = numbers;
    std::replace_if(
        expected.begin(), expected.end(), [](wchar_t point) { return !isCodePoint(point); }, replacement);
    require(Qx::ToIString(Qx::ToHString(numbers)) == expected, "each invalid number becomes one replacement character");
    return 0;
}

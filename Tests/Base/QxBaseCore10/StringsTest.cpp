#include "Base/QxBaseCore10/Strings.h"

#include <gtest/gtest.h>

namespace {

using Qx::ToHString;
using Qx::ToIString;

TEST(Strings, ValidTextSurvivesBothWays) {
    for (const std::string text :
         {"", "plain ASCII", "G\xC3\xA9nial", "\xE6\xAD\xAF\xE8\xBB\x8A", "\xF0\x9F\x98\x80 and \xF4\x8F\xBF\xBF"})
        EXPECT_EQ(ToHString(ToIString(text)), text);
    EXPECT_EQ(ToIString(std::string("a\0b", 3)), std::wstring(L"a\0b", 3));
    EXPECT_EQ(ToIString("\xF0\x9F\x98\x80"), L"\U0001F600");
}

TEST(Strings, InvalidTextBecomesReplacementCharacters) {
    const std::wstring replacement = L"\uFFFD";
    for (const char* text : {"\xFF", "\xC0\xAF", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xE6\xAD"})
        EXPECT_NE(ToIString(text).find(replacement), std::wstring::npos) << text;
    EXPECT_EQ(ToIString("a\xFFz").front(), L'a');
    EXPECT_EQ(ToIString("a\xFFz").back(), L'z');
    EXPECT_EQ(ToHString(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
}

} // namespace

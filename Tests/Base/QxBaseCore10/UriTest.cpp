#include "Base/QxBaseCore10/Uri.h"

#include <gtest/gtest.h>

namespace {

using Qx::Uri;

std::string withPairs(const std::string& url, std::initializer_list<std::pair<const char*, const char*>> pairs) {
    Uri uri(url);
    for (const auto& [key, value] : pairs)
        uri.SetQueryVariable(key, value);
    return uri.ToString(true);
}

TEST(Uri, AddsPairsInCallOrderWhereTheQueryEnds) {
    EXPECT_EQ(withPairs("https://x/y", {{"include", "stuff"}, {"something", "else"}}),
              "https://x/y?include=stuff&something=else");
    EXPECT_EQ(withPairs("https://x/y?a=1", {{"b", "2"}, {"b", "3"}}), "https://x/y?a=1&b=2&b=3");
    EXPECT_EQ(withPairs("https://x/y#f?g", {{"b", "2"}}), "https://x/y?b=2#f?g");
    EXPECT_EQ(withPairs("https://x/y?a#f", {{"b", "2"}}), "https://x/y?a&b=2#f");
    EXPECT_EQ(withPairs("", {{"", ""}}), "?=");
    EXPECT_EQ(withPairs("/", {{"k&=", "a b#\xC3\xA9"}}), "/?k%26%3D=a%20b%23%C3%A9");
}

TEST(Uri, EncodesOnlyWhatMayNotStandInAURL) {
    const std::string fine = "https://a:b@[::1]:8/p;x=1,2/%7e/!$'()*+?q=urn:a:b&c@d#f~._-";
    EXPECT_EQ(Uri(fine).ToString(true), fine);
    EXPECT_EQ(Uri("/a b\t\"<>\\^`{|}\xC3\xA9").ToString(true), "/a%20b%09%22%3C%3E%5C%5E%60%7B%7C%7D%C3%A9");
    EXPECT_EQ(Uri("/a b").ToString(false), "/a b");
}

TEST(Uri, UriEncodeLeavesOnlyUnreservedCharacters) {
    EXPECT_EQ(Uri::UriEncode("urn:vrnk.dorlqa:fs.file:A?version=3"), "urn%3Avrnk.dorlqa%3Afs.file%3AA%3Fversion%3D3");
    EXPECT_EQ(Uri::UriEncode("aZ09-._~"), "aZ09-._~");
    EXPECT_EQ(Uri::UriEncode(std::string("/%+ \0\xFF", 6)), "%2F%25%2B%20%00%FF");
}

} // namespace

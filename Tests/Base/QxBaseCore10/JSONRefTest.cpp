#include "Base/QxBaseCore10/JSONRef.h"

#include "Tests/Support/Json.h"

#include <gtest/gtest.h>

namespace {

// What `get` leaves in a destination that held `before`, which is not the value.
template <class Destination>
Destination got(const std::string& value, Destination before) {
    const Qx::JSONNode node = json("{\"v\":" + value + "}");
    const Destination was = before;
    const bool written = node["v"].get(before);
    EXPECT_EQ(written, before != was) << "get tells whether it has written " << value;
    return before;
}

TEST(JSONRef, ScalarsReachStringsAsText) {
    const std::pair<const char*, const char*> cases[] = {
        {R"("")", ""},       {R"("a\u00e9\n")", "a\xC3\xA9\n"},
        {"true", "true"},    {"false", "false"},
        {"-7", "-7"},        {"18446744073709551615", "18446744073709551615"},
        {"1.5", "1.5"},      {"0.1", "0.1"},
        {"1e300", "1e+300"}, {"null", "before"},
        {"[]", "before"},    {R"({"a":1})", "before"},
    };
    for (const auto& [value, expected] : cases)
        EXPECT_EQ(got<std::string>(value, "before"), expected) << value;
    EXPECT_EQ(got<std::wstring>(R"("\u6b6f\u8eca")", L"before"), L"\u6B6F\u8ECA");
    EXPECT_EQ(got<std::wstring>("12", L"before"), L"12");
    EXPECT_EQ(got<std::wstring>("null", L"before"), L"before");
}

TEST(JSONRef, OnlyBooleansReachBooleans) {
    EXPECT_TRUE(got("true", false));
    EXPECT_FALSE(got("false", true));
    for (const char* value : {"null", "0", "1", R"("false")", "[]", "{}"})
        EXPECT_TRUE(got(value, true)) << value;
}

TEST(JSONRef, OnlyIntegersInRangeReachIntegers) {
    const std::pair<const char*, std::int32_t> cases[] = {
        {"0", 0},
        {"2147483647", 2147483647},
        {"-2147483648", -2147483647 - 1},
        {"2147483648", 42},
        {"-2147483649", 42},
        {"18446744073709551615", 42},
        {"1.0", 42},
        {"true", 42},
        {R"("1")", 42},
        {"null", 42},
    };
    for (const auto& [value, expected] : cases)
        EXPECT_EQ(got<std::int32_t>(value, 42), expected) << value;
}

TEST(JSONRef, AsHStringFallsBackToTheDefault) {
    EXPECT_EQ(json(R"({"text":"t"})")["text"].asHString("default"), "t");
    EXPECT_EQ(json("{}")["text"].asHString("default"), "default");
}

} // namespace

// Tests of JSON nodes in addition to Tests/Cases/values.json.

#include "Base/QxBaseCore10/JSONNode.h"

#include "Base/QxBaseCore10/Detail/JSONElement.h"
#include "Base/QxBaseCore10/Status.h"
#include "Base/QxBaseCore10/Strings.h"

#include <gtest/gtest.h>

namespace {

using Qx::JSONNode;

bool parses(const std::string& text) {
    Qx::Status status;
    return JSONNode::parse(text, status).has_value();
}

// Returns nested arrays with `innermost` in the innermost one.
std::string nested(std::size_t levels, const std::string& innermost = "") {
    return std::string(levels, '[') + innermost + std::string(levels, ']');
}

TEST(JSONNode, ParsesManyMegabytesAndAtMost1024Levels) {
    const std::string filler(std::size_t{34} << 20, 'x');
    const JSONNode node("{\"a\":\"" + filler + "\",\"b\":1}");
    EXPECT_EQ(node["a"].asHString("").size(), filler.size());
    EXPECT_EQ(node["b"].asHString(""), "1");
    EXPECT_FALSE(parses("{\"a\":\"" + filler));
    EXPECT_TRUE(parses(nested(1024)) && parses(nested(1023, "1")));
    EXPECT_FALSE(parses(nested(1025)) || parses(nested(1024, "1")) || parses(nested(1'000'000)));
}

// With a 16-bit wchar_t, the character is a surrogate pair.
TEST(Strings, RepresentACharacterBeyondTheBasicPlaneAsTheSystemDoes) {
    std::wstring wide;
    JSONNode(R"({"a":"\ud83d\ude00!"})")["a"].get(wide);
    EXPECT_EQ(wide, L"\U0001F600!");
    EXPECT_EQ(wide.size(), sizeof(wchar_t) == 2 ? 3U : 2U);
    EXPECT_EQ(Qx::ToHString(wide), "\xF0\x9F\x98\x80!");
    EXPECT_EQ(Qx::ToHString(std::wstring{0xD83D, L'!'}), "\xEF\xBF\xBD!") << "an unpaired surrogate";
}

TEST(JSONNode, RejectsInvalidJSONEvenNextToOddValues) {
    for (const char* text : {"[01e999]",         "[-]",         "[1.2.3e999]",  "[1.e999]",
                             "[1e999 1]",        "[1e999\"\"]", "{1e999:1}",    "{1e999 :1}",
                             "[tru1e999]",       "[1e999\xE5]", "[1e999,]",     "[\xFF]",
                             "[\"\\\xFF\"]",     "[tru\xE9]",   "[\"\xFF\n\"]", "[\"\xFF]",
                             "\"\xFF\" \"\"",    "[\"\\ud83d]", "[\"\\ud83\"]", "[\"\\ud83d\\u12g4\"]",
                             "[\"\\ud83d\\x\"]", "\"\\ud83d",   "\"\\ud83d\\",  "\xFF\xFE[\0\"\0\xE9\0\"\0]\0"})
        EXPECT_FALSE(parses(text) || parses(std::string("[1e999,") + text + ']')) << text;
    EXPECT_TRUE(parses(nested(1023, "1e999")) && parses(nested(1023, "\"\xFF\"")));
    EXPECT_FALSE(parses(nested(1024, "1e999")) || parses(nested(1024, "\"\xFF\"")));
}

TEST(JSONNode, FindsEachKeyWhateverWasLookedUpBefore) {
    JSONNode node(R"({"a":"b","b":"1","b":"2","c":"3"})");
    EXPECT_TRUE(node.exists("b"));
    EXPECT_EQ(node["b"].asHString(""), "1");
    EXPECT_EQ(node["c"].asHString(""), "3");
    const JSONNode copy = node;
    Qx::Status status;
    for (const char* text : {"{}", R"({"c":"a","d":"b","b":"4"})"}) {
        node = copy;
        EXPECT_TRUE(node.exists("c"));
        node = JSONNode::parse(text, status).value();
        EXPECT_EQ(node["b"].isNull(), !node.exists("b")) << text;
        EXPECT_TRUE(node["a"].isNull()) << text;
    }
    EXPECT_EQ(node["b"].asHString(""), "4");
}

TEST(JSONNode, ChildrenOutliveTheirParent) {
    JSONNode child;
    {
        const JSONNode root(R"({"a":{"b":"text that is longer than a short string"}})");
        const Qx::JSONRef ref = root["a"];
        child = JSONNode(ref);
    }
    EXPECT_EQ(child["b"].asHString(""), "text that is longer than a short string");
    const JSONNode moved = std::move(child);
    EXPECT_TRUE(moved.exists("b"));
    EXPECT_FALSE(child.exists("b")) << "a moved-from node is null";
}

// The parser's values are stored as raw bits, so their layout must not change.
TEST(JSONElement, RoundTripsThroughAJSONPlace) {
    using namespace Qx::Detail;
    simdjson::dom::parser parser;
    const simdjson::dom::array values =
        parser.parse(R"(["text",true,false,-7,18446744073709551615,0.5,null,[],{}])"_padded);
    std::string texts;
    auto walk = toPlace(values.begin());
    for (const simdjson::dom::element value : values) {
        EXPECT_EQ(toPlace(value).document, &parser.doc);
        EXPECT_EQ(simdjson::minify(elementAt(toPlace(value))), simdjson::minify(value));
        const auto here = fromPlace<simdjson::dom::array::iterator>(walk);
        EXPECT_EQ(simdjson::minify(*here), simdjson::minify(value));
        texts += simdjson::minify(elementAt(toPlace(value))) + ' ';
        walk = toPlace(++fromPlace<simdjson::dom::array::iterator>(walk));
    }
    EXPECT_EQ(texts, R"("text" true false -7 18446744073709551615 0.5 null [] {} )");
    const simdjson::dom::object object = parser.parse(R"({"a":1,"b":"2"})"_padded);
    const auto second = fromPlace<simdjson::dom::object::iterator>(toPlace(++object.begin()));
    EXPECT_EQ(second.key(), "b");
    EXPECT_EQ(second.value().get_string().value(), "2");
}

} // namespace

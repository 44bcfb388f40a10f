#include "Base/QxBaseCore10/JSONNode.h"

#include "Base/QxBaseCore10/Status.h"
#include "Tests/Support/Json.h"

#include <future>
#include <gtest/gtest.h>
#include <vector>

namespace {

// Arrays in one another, with `innermost` in the last.
std::string nested(std::size_t levels, const std::string& innermost = "") {
    return std::string(levels, '[') + innermost + std::string(levels, ']');
}

bool parses(const std::string& text) {
    Qx::JSONNode node;
    Qx::Status status;
    const bool parsed = Qx::JSONNode::parse(text, 0, node, status);
    EXPECT_EQ(parsed, status.isOk()) << text.substr(0, 40);
    return parsed;
}

TEST(JSONNode, RefusesWhatIsNotJSON) {
    for (const char* text : {"", " ", "\xEF\xBB\xBF", "\xEF\xBB\xBF\xEF\xBB\xBF{}", "nul", "{} x", "{}{", "[1,]", "01",
                             "1e999", "\"a\xFF\"", "\"a\nb\"", R"("\ud800")", R"("\udc00")", R"("\ud83d\u0041")",
                             "18446744073709551616", "-9223372036854775809"})
        EXPECT_FALSE(parses(text)) << text;
    for (const std::string& text : {std::string("{}\0", 3), nested(1025), nested(1024, "1"), nested(1'000'000)})
        EXPECT_FALSE(parses(text)) << text.substr(0, 40);
    for (const std::string& text : {nested(1024), nested(1023, "1"), std::string("\xEF\xBB\xBF{}"),
                                    std::string("18446744073709551615"), std::string(R"("\ud83d\ude00")")})
        EXPECT_TRUE(parses(text)) << text.substr(0, 40);
    EXPECT_EQ(json("{").toText(), "null");
    EXPECT_TRUE(json("{")["a"].isNull());
}

TEST(JSONNode, KeepsItsValueWhenParsingFails) {
    Qx::JSONNode node = json(R"({"a":1})");
    Qx::Status status;
    EXPECT_FALSE(Qx::JSONNode::parse("{", 0, node, status));
    EXPECT_TRUE(node.exists("a"));
    EXPECT_TRUE(Qx::JSONNode::parse("{}", 0, node, status));
    EXPECT_TRUE(status.isOk()) << "a reason from before is gone";
}

TEST(JSONNode, HasAKeyWhoseValueIsNull) {
    const Qx::JSONNode node = json(R"({"a":null,"b":0,"b":1})");
    EXPECT_TRUE(node.exists("a"));
    EXPECT_TRUE(node["a"].isNull());
    EXPECT_FALSE(node.exists("A"));
    EXPECT_TRUE(node["A"].isNull());
    EXPECT_EQ(node["b"].asHString(""), "0") << "of a repeated key the first counts";
}

TEST(JSONNode, FindsEachKeyWhateverItFoundBefore) {
    Qx::JSONNode node = json(R"({"a":"b","b":"1","b":"2","c":"3"})");
    EXPECT_TRUE(node.exists("b"));
    EXPECT_EQ(node["b"].asHString(""), "1");
    EXPECT_EQ(node["c"].asHString(""), "3");
    const Qx::JSONNode copy = node;
    Qx::Status status;
    for (const char* text : {"{}", R"({"c":"a","d":"b","b":"4"})"}) {
        node = copy;
        EXPECT_TRUE(node.exists("c"));
        ASSERT_TRUE(Qx::JSONNode::parse(text, 0, node, status));
        EXPECT_EQ(node["b"].isNull(), !node.exists("b")) << text;
        EXPECT_TRUE(node["a"].isNull()) << text;
    }
    EXPECT_EQ(node["b"].asHString(""), "4");
}

TEST(JSONNode, IsReadByThreadsSideBySide) {
    const Qx::JSONNode node = json(R"({"a":"1","b":"2"})");
    std::vector<std::future<int>> readers;
    for (const char* key : {"a", "b", "a", "b"})
        readers.push_back(std::async(std::launch::async, [&node, key, expected = node[key].asHString("")] {
            int wrong = 0;
            for (int read = 0; read < 10'000; ++read)
                wrong += node.exists(key) && node[key].asHString("") == expected ? 0 : 1;
            return wrong;
        }));
    for (std::future<int>& reader : readers)
        EXPECT_EQ(reader.get(), 0);
}

TEST(JSONNode, ParsesTextOfManyMegabytes) {
    const std::string filler(std::size_t{34} << 20, 'x');
    const Qx::JSONNode node = json("{\"a\":\"" + filler + "\",\"b\":1}");
    EXPECT_EQ(node["a"].asHString("").size(), filler.size());
    EXPECT_EQ(node["b"].asHString(""), "1");
    EXPECT_FALSE(parses("{\"a\":\"" + filler));
}

TEST(JSONNode, WrongKindsHaveNoKeysAndNoElements) {
    for (const char* text : {"null", "true", "1", "\"id\"", "[{\"id\":1}]"})
        EXPECT_FALSE(json(text).exists("id")) << text;
    for (const char* text : {"null", "true", "1", "\"id\"", "{\"id\":1}"}) {
        EXPECT_FALSE(json(text).isArray()) << text;
        EXPECT_FALSE(json(text).begin() != json(text).end()) << text;
    }
}

TEST(JSONNode, WalksArraysInOrderOverNestedElements) {
    const Qx::JSONNode node = json(R"([1,[2,{"a":[3]}],{"b":4},"five",[]])");
    std::string texts;
    for (const Qx::JSONRef& element : node)
        texts += Qx::JSONNode(element).toText() + ";";
    EXPECT_EQ(texts, R"(1;[2,{"a":[3]}];{"b":4};"five";[];)");
    EXPECT_TRUE(json("[]").isArray());
    EXPECT_TRUE(json("[]").begin() == json("[]").end());
}

TEST(JSONNode, ChildrenOutliveTheNodeTheyCameFrom) {
    Qx::JSONNode child;
    {
        const Qx::JSONNode root = json(R"({"a":{"b":"text that is longer than a short string"}})");
        const Qx::JSONRef ref = root["a"];
        child = Qx::JSONNode(ref);
    }
    EXPECT_EQ(child["b"].asHString(""), "text that is longer than a short string");
    const Qx::JSONNode moved = std::move(child);
    EXPECT_TRUE(moved.exists("b"));
    EXPECT_FALSE(child.exists("b")) << "a moved-from node is null";
}

} // namespace

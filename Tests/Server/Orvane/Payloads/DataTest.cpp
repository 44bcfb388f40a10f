#include "Server/Orvane/Payloads/Data.h"

#include "Server/Orvane/Payloads/Links.h"
#include "Tests/Support/Json.h"

#include <gtest/gtest.h>

namespace {

using Orvane::Payloads::Data;
using Orvane::Payloads::Links;

TEST(Data, ReadsWhatTheNodeCarriesAndKeepsTheRest) {
    Data data{json("{}")};
    Links links{json(R"({"self":{"href":"/here"}})")};
    EXPECT_EQ(data.getId() + data.getType() + links.getHref(), "");
    for (const char* node : {R"({"id":"an-id","type":"files","self":"/here"})", R"({"type":"folders"})",
                             R"({"id":null,"type":[],"self":{}})"}) {
        data.init(json(node));
        links.init(json(node));
        EXPECT_EQ(data.getId(), "an-id") << node;
        EXPECT_EQ(links.getHref(), "/here") << node;
    }
    EXPECT_EQ(data.getType(), "folders");
}

TEST(Data, MovingLeavesTheSourceEmpty) {
    Data data{json(R"({"id":"short","type":"longer than a text that is held in place"})")};
    const Data moved = std::move(data);
    EXPECT_EQ(moved.getId(), "short");
    EXPECT_EQ(data.getId() + data.getType(), "");
}

} // namespace

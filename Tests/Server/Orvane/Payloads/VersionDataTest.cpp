#include "Server/Orvane/Payloads/VersionData.h"

#include "Tests/Support/Json.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

using Orvane::Payloads::VersionData;

static_assert(!std::is_default_constructible_v<VersionData>);

TEST(VersionData, ReadsNameTitleAndFile) {
    VersionData version(
        json(R"({"id":"v","type":"versions","name":"n","title":"t","file":{"id":"urn:vrnk.dorlqa:dm.lineage:B"}})"));
    EXPECT_EQ(version.getId(), "v");
    EXPECT_EQ(version.getName(), "n");
    EXPECT_EQ(version.getTitle(), "t");
    EXPECT_EQ(version.getFileId(), "urn:vrnk.dorlqa:dm.lineage:B");
    EXPECT_EQ(VersionData::dataType(), "versions");
    const VersionData moved = std::move(version);
    EXPECT_EQ(moved.getFileId(), "urn:vrnk.dorlqa:dm.lineage:B");
    EXPECT_EQ(version.getFileId() + version.getId(), "");
}

TEST(VersionData, WhatIsMissingStaysEmpty) {
    for (const char* text : {R"({"id":"v","type":"versions"})", R"({"id":"v","type":"versions","file":null})",
                             R"({"id":"v","type":"versions","file":{"type":"files"}})",
                             R"({"id":"v","type":"Versions","name":"n","title":"t","file":{"id":"f"}})"}) {
        const VersionData version(json(text));
        EXPECT_EQ(version.getId(), "v") << text;
        EXPECT_EQ(version.getName() + version.getTitle() + version.getFileId(), "") << text;
    }
    EXPECT_EQ(VersionData(json(R"({"type":"versions","title":"t"})")).getName(), "");
}

} // namespace

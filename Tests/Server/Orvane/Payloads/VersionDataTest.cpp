#include "Server/Orvane/Payloads/VersionData.h"

#include "Tests/Support/Json.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

using Orvane::Payloads::VersionData;

static_assert(!std::is_default_constructible_v<VersionData>);

TEST(VersionData, ReadsItsJSON) {
    const std::pair<const char*, const char*> cases[] = {
        {R"("id":"v","type":"versions","name":"n","title":"t","file":{"id":"urn:B"})", "v versions n t urn:B"},
        {R"("id":"v","type":"versions","title":"t","file":null)", "v versions  t "},
        {R"("id":"v","type":"versions","name":"n","file":{"type":"files"})", "v versions n  "},
        {R"("id":"v","type":"Versions","name":"n","title":"t","file":{"id":"f"})", "v Versions   "},
    };
    for (const auto& [members, expected] : cases) {
        const VersionData version(json("{" + std::string(members) + "}"));
        EXPECT_EQ(version.getId() + ' ' + version.getType() + ' ' + version.getName() + ' ' + version.getTitle() + ' ' +
                      version.getFileId(),
                  expected);
    }
    EXPECT_EQ(VersionData::dataType(), "versions");
}

} // namespace

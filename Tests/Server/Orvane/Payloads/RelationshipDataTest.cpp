#include "Server/Orvane/Payloads/RelationshipData.h"

#include "Tests/Support/Json.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

using Orvane::Payloads::RelationshipData;

static_assert(!std::is_default_constructible_v<RelationshipData>);

// "id type link from to sourceFrom sourceTo relationshipType".
std::string describe(const RelationshipData& relationship) {
    const char* const types[] = {"OTHER", "DERIVED", "DEPENDENCY", "XREF", "AUXILIARY"};
    return relationship.getId() + ' ' + relationship.getType() + ' ' + relationship.getHref() + ' ' +
           relationship.fromUrn() + ' ' + relationship.toUrn() + ' ' + relationship.sourceFromUrn() + ' ' +
           relationship.sourceToUrn() + ' ' + types[static_cast<int>(relationship.relationshipType())];
}

TEST(RelationshipData, ReadsItsJSON) {
    const std::pair<const char*, const char*> cases[] = {
        {R"("id":"r","type":"relationships","self":"/r","fromUrn":{"id":"urn:A?version=3"},"sourceToUrn":{"id":"st"},
            "toUrn":{"type":"versions","id":"urn:B?version=1"},"sourceFromUrn":{"id":"sf"},"relationshipType":"XREF")",
         "r relationships /r urn:A?version=3 urn:B?version=1 sf st XREF"},
        {R"("type":"relationships","links":{"self":"/r"},"fromUrn":null,"toUrn":{"type":"versions"},
            "sourceFromUrn":"sf","relationshipType":"DERIVED")",
         " relationships      DERIVED"},
        {R"("id":"r","type":"links","self":"/r","fromUrn":{"id":"f"},"relationshipType":"XREF")",
         "r links /r     OTHER"},
        {R"("type":"relationships","relationshipType":"DEPENDENCY")", " relationships      DEPENDENCY"},
        {R"("type":"relationships","relationshipType":"AUXILIARY")", " relationships      AUXILIARY"},
        {R"("type":"relationships","relationshipType":"xref")", " relationships      OTHER"},
        {R"("type":"relationships","relationshipType":"")", " relationships      OTHER"},
        {R"("type":"relationships")", " relationships      OTHER"},
    };
    for (const auto& [members, expected] : cases)
        EXPECT_EQ(describe(RelationshipData(json("{" + std::string(members) + "}"))), expected) << members;
    EXPECT_EQ(RelationshipData::dataType(), "relationships");
}

} // namespace

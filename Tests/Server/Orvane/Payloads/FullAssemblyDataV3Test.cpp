#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include "Tests/Support/Documents.h"

#include <gtest/gtest.h>
#include <tuple>
#include <type_traits>

namespace {

using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;

static_assert(std::is_convertible_v<FullAssemblyDataV3*, FullAssemblyData*>);

const std::string folderA = "urn:vrnk.dorlqa:fs.folder:folderA";

// "relationships folder [direct references]", the answers from the document's own fields.
std::string describeOwn(const FullAssemblyDataV3& document) {
    return std::to_string(document.getAllRelationships().size()) + ' ' +
           (document.getFolder(folderA) ? document.getFolder(folderA)->name() : "none") + " [" +
           listed(document.getDirectReferencedFiles()) + ']';
}

// The answers from the fields of its base.
std::string describeBase(const FullAssemblyDataV3& document) {
    return document.getId() + ' ' + listed(document.getAllReferencedFiles()) +
           std::to_string(document.getProjectDetails().size());
}

const std::string wholeOwn = "1 folder name [urn:vrnk.dorlqa:dm.lineage:B=B v1;]";
const std::string wholeBase =
    "urn:vrnk.dorlqa:fs.file:A?version=3 urn:vrnk.dorlqa:dm.lineage:A=A;urn:vrnk.dorlqa:dm.lineage:B=B;1";

TEST(FullAssemblyDataV3, ReadsAWholeDocumentThatItsBasePointerLeadsTo) {
    const std::shared_ptr<FullAssemblyData> base = std::make_shared<FullAssemblyDataV3>(DocumentParts().root());
    const auto document = std::dynamic_pointer_cast<FullAssemblyDataV3>(base);
    ASSERT_TRUE(document);
    EXPECT_EQ(describeOwn(*document), wholeOwn);
    EXPECT_EQ(describeBase(*document), wholeBase);
    EXPECT_EQ(document->getAllRelationships().front()->toUrn(), "urn:vrnk.dorlqa:fs.file:B?version=1");
    EXPECT_EQ(listed(base->getDirectReferencedFiles()), listed(document->getDirectReferencedFiles()));
}

TEST(FullAssemblyDataV3, DirectReferencesRunInBothDirectionsOfAnyRelationship) {
    const auto tie = [](const std::string& from, const std::string& to, const std::string& type = "relationships") {
        return R"({"type":")" + type + R"(","fromUrn":{"id":")" + from + R"("},"toUrn":{"id":")" + to + R"("}})";
    };
    const auto version = [](const std::string& id, const std::string& fileId, const std::string& title) {
        return R"({"id":")" + id + R"(","type":"versions","title":")" + title + R"(","file":{"id":")" + fileId +
               R"("}})";
    };
    const std::string v1 = version("v1", "f1", "t1");
    const std::tuple<std::string, std::string, const char*> cases[] = {
        {tie("own", "v1"), v1, "f1=t1;"},
        {tie("v1", "own"), v1, "f1=t1;"},
        {tie("own", "own"), version("own", "f", "self"), "f=self;"},
        {tie("v1", "v2"), v1 + "," + version("v2", "f2", "t2"), ""},
        {tie("own?version=2", "v1"), v1, ""},
        {tie("own", "gone"), v1, ""},
        {tie("own", "v1"), version("v1", "", "t1"), ""},
        {tie("own", "v1"), version("v1", "f1", ""), ""},
        {tie("own", "v1", "links"), v1, ""},
        {tie("own", "v1") + "," + tie("v2", "own"), version("v1", "f", "1st") + "," + version("v2", "f", "2nd"),
         "f=1st;"},
        {tie("own", "v1"), v1 + "," + version("v1", "f2", "\xE6\xAD\xAF"), "f2=\xE6\xAD\xAF;"},
        {tie("own", "v1"), v1 + R"(,{"id":"v1","type":"other"})", ""},
    };
    for (const auto& [relationships, versions, expected] : cases) {
        DocumentParts parts;
        parts.id = "own";
        parts.relationships = relationships;
        parts.versions = versions;
        const FullAssemblyDataV3 document(parts.root());
        EXPECT_EQ(listed(document.getDirectReferencedFiles()), expected) << relationships << versions;
        EXPECT_FALSE(document.getAllRelationships().empty()) << "every relationship is kept";
    }
}

TEST(FullAssemblyDataV3, PartsThatAreMissingOrNoArraysAreEmpty) {
    const std::pair<std::string, const char*> cases[] = {
        {R"({ "results": "yes" })", "0 none []"},
        {R"({"data":{"id":"d","relationships":[{"type":"relationships","fromUrn":{"id":"d"}}]}})", "1 none []"},
        {R"({"data":{"relationships":null},"included":{"folders":[{"id":")" + folderA + R"(","type":"folders"}]}})",
         "0  []"},
        {R"({"data":{"relationships":{}},"included":{"versions":null,"folders":"f"}})", "0 none []"},
        {R"({"data":{"relationships":[1,null]},"included":{"versions":3,"folders":null}})", "2 none []"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(describeOwn(FullAssemblyDataV3(json(text))), expected) << text;
}

TEST(FullAssemblyDataV3, OfRepeatedFoldersTheLastOfTheRightTypeStays) {
    DocumentParts parts;
    parts.folders = R"({"id":"f","type":"folders","name":"first"},{"id":"f","type":"folders","name":"last"},
                       {"id":"f","type":"Folders","name":"skipped"},{"id":"g","type":"projects"},{"type":"folders"})";
    const FullAssemblyDataV3 document(parts.root());
    EXPECT_EQ(document.getFolder("f")->name(), "last");
    EXPECT_EQ(document.getFolder("g"), nullptr);
    EXPECT_TRUE(document.getFolder("")) << "a folder without an id stands under the empty one";
}

TEST(FullAssemblyDataV3, MovingTakesItsOwnFieldsAndCopiesTheBase) {
    FullAssemblyDataV3 source(DocumentParts().root());
    FullAssemblyDataV3 moved = std::move(source);
    EXPECT_EQ(describeOwn(moved) + describeBase(moved), wholeOwn + wholeBase);
    EXPECT_EQ(describeOwn(source) + describeBase(source), "0 none []" + wholeBase);
    source = std::move(moved);
    EXPECT_EQ(describeOwn(moved) + describeBase(moved), "0 none []" + wholeBase);
    FullAssemblyDataV3& self = source;
    source = self;
    source = std::move(self);
    EXPECT_EQ(describeOwn(source) + describeBase(source), wholeOwn + wholeBase)
        << "assigning to itself changes nothing";
}

TEST(FullAssemblyDataV3, CopiesShareFoldersAndRelationshipsButNotProjects) {
    const FullAssemblyDataV3 source(DocumentParts().root());
    FullAssemblyDataV3 copy;
    copy = source;
    EXPECT_EQ(copy.getFolder(folderA), source.getFolder(folderA));
    EXPECT_EQ(copy.getAllRelationships(), source.getAllRelationships());
    EXPECT_NE(copy.getProject("1234567890123456"), source.getProject("1234567890123456"));
}

} // namespace

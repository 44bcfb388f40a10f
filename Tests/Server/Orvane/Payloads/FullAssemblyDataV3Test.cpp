#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include "Tests/Support/Documents.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

using Orvane::Payloads::ContainerType;
using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;
using References = std::unordered_map<std::string, std::wstring>;

static_assert(std::is_convertible_v<FullAssemblyDataV3*, FullAssemblyData*>);

// A relationship of any type between two ids.
std::string tie(const std::string& from, const std::string& to, const std::string& type = "relationships") {
    return R"({"type":")" + type + R"(","fromUrn":{"id":")" + from + R"("},"toUrn":{"id":")" + to + R"("}})";
}

std::string version(const std::string& id, const std::string& fileId, const std::string& title) {
    return R"({"id":")" + id + R"(","type":"versions","name":"n","title":")" + title + R"(","file":{"id":")" + fileId +
           R"("}})";
}

FullAssemblyDataV3 documentWith(const std::string& relationships, const std::string& versions) {
    DocumentParts parts;
    parts.id = "own";
    parts.relationships = "[" + relationships + "]";
    parts.versions = "[" + versions + "]";
    return FullAssemblyDataV3(parts.root());
}

TEST(FullAssemblyDataV3, ReadsAWholeDocument) {
    const std::shared_ptr<FullAssemblyData> base = std::make_shared<FullAssemblyDataV3>(DocumentParts().root());
    const auto document = std::dynamic_pointer_cast<FullAssemblyDataV3>(base);
    ASSERT_TRUE(document);
    ASSERT_EQ(document->getAllRelationships().size(), 1U);
    EXPECT_EQ(document->getAllRelationships().front()->toUrn(), "urn:vrnk.dorlqa:fs.file:B?version=1");
    EXPECT_EQ(document->getAllRelationships().front()->fromUrn(), "urn:vrnk.dorlqa:fs.file:A?version=3");
    EXPECT_EQ(base->getDirectReferencedFiles(), (References{{"urn:vrnk.dorlqa:dm.lineage:B", L"B v1"}}));
    EXPECT_EQ(document->getAllReferencedFiles(),
              (References{{"urn:vrnk.dorlqa:dm.lineage:A", L"A"}, {"urn:vrnk.dorlqa:dm.lineage:B", L"B"}}));
    const auto folder = document->getFolder("urn:vrnk.dorlqa:fs.folder:folderA");
    ASSERT_TRUE(folder);
    EXPECT_EQ(folder->name(), "folder name");
    EXPECT_EQ(folder->type(), ContainerType::FOLDER);
}

TEST(FullAssemblyDataV3, DirectReferencesRunInBothDirectionsOfAnyRelationship) {
    struct Case {
        std::string relationships;
        std::string versions;
        References expected;
    };
    const Case cases[] = {
        {tie("own", "v1"), version("v1", "f1", "t1"), {{"f1", L"t1"}}},
        {tie("v1", "own"), version("v1", "f1", "t1"), {{"f1", L"t1"}}},
        {tie("own", "own"), version("own", "f", "self"), {{"f", L"self"}}},
        {tie("v1", "v2"), version("v1", "f1", "t1") + "," + version("v2", "f2", "t2"), {}},
        {tie("own?version=2", "v1"), version("v1", "f1", "t1"), {}},
        {tie("own", "gone"), version("v1", "f1", "t1"), {}},
        {tie("own", "v1"), version("v1", "", "t1"), {}},
        {tie("own", "v1"), version("v1", "f1", ""), {}},
        {tie("own", "v1", "links"), version("v1", "f1", "t1"), {}},
        {tie("own", "v1") + "," + tie("v2", "own"),
         version("v1", "f", "met first") + "," + version("v2", "f", "met second"),
         {{"f", L"met first"}}},
        {tie("own", "v1"),
         version("v1", "f1", "replaced") + "," + version("v1", "f2", "\xE6\xAD\xAF"),
         {{"f2", L"\u6B6F"}}},
    };
    for (const Case& expected : cases) {
        const FullAssemblyDataV3 document = documentWith(expected.relationships, expected.versions);
        EXPECT_EQ(document.getDirectReferencedFiles(), expected.expected)
            << expected.relationships << expected.versions;
        EXPECT_FALSE(document.getAllRelationships().empty()) << "every relationship is kept";
    }
}

TEST(FullAssemblyDataV3, AVersionOfAnotherTypeReplacesTheOneOfItsId) {
    const FullAssemblyDataV3 document =
        documentWith(tie("own", "v1"), version("v1", "f1", "t1") + R"(,{"id":"v1","type":"other"})");
    EXPECT_TRUE(document.getDirectReferencedFiles().empty());
}

TEST(FullAssemblyDataV3, OfRepeatedFoldersTheLastOfTheRightTypeStays) {
    DocumentParts parts;
    parts.folders = R"([{"id":"f","type":"folders","name":"first"},{"id":"f","type":"folders","name":"last"},
                        {"id":"f","type":"Folders","name":"skipped"},{"id":"g","type":"projects"},
                        {"type":"folders","name":"nameless"}])";
    const FullAssemblyDataV3 document(parts.root());
    EXPECT_EQ(document.getFolder("f")->name(), "last");
    EXPECT_EQ(document.getFolder("g"), nullptr);
    EXPECT_EQ(document.getFolder("")->name(), "nameless");
}

TEST(FullAssemblyDataV3, PartsThatAreMissingOrNoArraysAreEmpty) {
    const std::string relationship = tie("d", "v");
    const std::string folder = R"({"id":"f","type":"folders"})";
    struct Case {
        std::string text;
        std::size_t relationships;
        bool hasFolder;
    };
    for (const Case& expected :
         {Case{R"({ "results": "yes" })", 0, false},
          Case{R"({"data":{"id":"d","relationships":[)" + relationship + "]}}", 1, false},
          Case{R"({"data":{"relationships":null},"included":{"folders":[)" + folder + "]}}", 0, true},
          Case{R"({"data":{"relationships":{}},"included":{"versions":null,"folders":[)" + folder + "]}}", 0, true},
          Case{R"({"data":{"relationships":[1,null]},"included":{"versions":3,"folders":"f"}})", 2, false}}) {
        const FullAssemblyDataV3 document(json(expected.text));
        EXPECT_EQ(document.getAllRelationships().size(), expected.relationships) << expected.text;
        EXPECT_EQ(document.getFolder("f") != nullptr, expected.hasFolder) << expected.text;
        EXPECT_TRUE(document.getDirectReferencedFiles().empty()) << expected.text;
    }
}

// What a document answers from its own fields, and from those of its base.
std::string ownPart(const FullAssemblyDataV3& document) {
    return std::to_string(document.getAllRelationships().size()) +
           std::to_string(document.getDirectReferencedFiles().size()) +
           (document.getFolder("urn:vrnk.dorlqa:fs.folder:folderA") ? "1" : "0");
}

std::string basePart(const FullAssemblyDataV3& document) {
    return document.getId() + std::to_string(document.getAllReferencedFiles().size()) +
           std::to_string(document.getProjectDetails().size());
}

TEST(FullAssemblyDataV3, MovingTakesItsOwnFieldsAndCopiesTheBase) {
    FullAssemblyDataV3 source(DocumentParts().root());
    const std::string base = basePart(source);
    FullAssemblyDataV3 moved = std::move(source);
    EXPECT_EQ(ownPart(moved), "111");
    EXPECT_EQ(basePart(moved), base);
    EXPECT_EQ(ownPart(source), "000");
    EXPECT_EQ(basePart(source), base);
    source = std::move(moved);
    EXPECT_EQ(ownPart(source) + basePart(source), "111" + base);
    EXPECT_EQ(ownPart(moved) + basePart(moved), "000" + base);

    FullAssemblyDataV3& self = source;
    source = self;
    source = std::move(self);
    EXPECT_EQ(ownPart(source) + basePart(source), "111" + base) << "assigning to itself changes nothing";
}

TEST(FullAssemblyDataV3, CopiesShareFoldersVersionsAndRelationships) {
    const FullAssemblyDataV3 source(DocumentParts().root());
    FullAssemblyDataV3 assigned;
    assigned = source;
    for (const auto& document :
         {std::make_shared<FullAssemblyDataV3>(source), std::make_shared<FullAssemblyDataV3>(assigned)}) {
        EXPECT_EQ(document->getFolder("urn:vrnk.dorlqa:fs.folder:folderA"),
                  source.getFolder("urn:vrnk.dorlqa:fs.folder:folderA"));
        EXPECT_EQ(document->getAllRelationships(), source.getAllRelationships());
        EXPECT_NE(document->getProject("1234567890123456"), source.getProject("1234567890123456"));
    }
}

} // namespace

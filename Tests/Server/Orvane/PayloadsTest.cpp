// Tests of records and documents, except reading and queries, which Tests/Cases covers.
// Fuzz/AssemblyFuzzer.cpp tests moving V3 documents.

#include "Base/QxBaseCore10/JSONNode.h"
#include "Tests/Support/Answers.h"
#include "Tests/Support/Cases.h"

#include <chrono>
#include <gtest/gtest.h>
#include <initializer_list>
#include <locale>
#include <type_traits>

namespace {

using namespace Orvane::Payloads;
using Qx::JSONNode;

static_assert(!std::is_default_constructible_v<FilesData>);
static_assert(!std::is_default_constructible_v<RelationshipData>);
static_assert(!std::is_default_constructible_v<VersionData>);
static_assert(!std::is_convertible_v<JSONNode, FilesData>);
static_assert(!std::is_polymorphic_v<FilesData> && !std::is_polymorphic_v<FolderData>);
static_assert(!std::is_polymorphic_v<ProjectData>);
static_assert(std::is_nothrow_move_constructible_v<FilesData> && std::is_nothrow_move_constructible_v<ProjectData>);
static_assert(!std::is_nothrow_move_constructible_v<FolderData>, "moving a folder copies it");
static_assert(std::has_virtual_destructor_v<FullAssemblyData>);
static_assert(!std::is_convertible_v<FullAssemblyData*, Links*>, "the link of a document is private");
static_assert(!std::is_nothrow_move_constructible_v<FullAssemblyData>, "moving a document copies it");
static_assert(std::is_convertible_v<FullAssemblyDataV3*, FullAssemblyData*>);

const JSONNode wholeFolder(R"({"id":"f","type":"folders","links":{"self":"/f"},"name":"n","parent":"urn:p",
    "visible":true,"status":"Active","containerType":"FOLDER","me":{"isMember":"true","membership":"M",
    "allowed-actions":["view"]}})");

TEST(Records, DataTypesAreTheServicesNames) {
    EXPECT_EQ(FilesData::dataType() + ' ' + FolderData::dataType() + ' ' + ProjectData::dataType() + ' ' +
                  RelationshipData::dataType() + ' ' + VersionData::dataType(),
              "files folders projects relationships versions");
}

TEST(Records, InitOverwritesOnlyWhatTheNodeContains) {
    Data data;
    Links links;
    for (const char* node : {R"({"id":"an-id","type":"files","self":"/here"})", R"({"type":"folders"})",
                             R"({"id":null,"type":[],"self":{}})"}) {
        data.init(JSONNode(node));
        links.init(JSONNode(node));
        EXPECT_EQ(data.getId() + links.getHref(), "an-id/here") << node;
    }
    EXPECT_EQ(data.getType(), "folders");
}

TEST(Records, MovingEmptiesTheSourcesTextsAndKeepsItsOtherFields) {
    ProjectData project(JSONNode(R"({"id":"p","type":"projects","name":"n","visible":true,"status":"Inactive"})"));
    Json all = describe(project);
    EXPECT_EQ(describe(ProjectData(std::move(project))), all);
    all.update({{"id", ""}, {"type", ""}, {"name", ""}});
    EXPECT_EQ(describe(project), all);
}

// A change to a record: one field gets another value, after which the record compares equal to the
// original or not.
template <class Record>
struct Change {
    const char* field;
    Json value;
    void (*make)(Record& record);
    bool isEqual = false;
};

template <class Record>
Record changed(const Record& record, const Change<Record>& change) {
    Record made(record);
    change.make(made);
    Json expected = describe(record);
    expected[change.field] = change.value;
    EXPECT_EQ(describe(made), expected) << change.field;
    return made;
}

TEST(ProjectData, EachSetterReplacesOneField) {
    const ProjectData whole(JSONNode(R"({"id":"p","type":"projects","links":{"self":"/x"},"name":"x","parent":"x",
        "visible":false,"status":"Active","me":{"membership":"x","role":"x"},"communityType":"x"})"));
    for (const Change<ProjectData>& change : std::initializer_list<Change<ProjectData>>{
             {"id", "i", [](auto& project) { project.setId("i"); }},
             {"type", "t", [](auto& project) { project.setType("t"); }},
             {"href", "/p", [](auto& project) { project.setHref("/p"); }},
             {"name", "n", [](auto& project) { project.setName(L"n"); }},
             {"parent", "urn:f", [](auto& project) { project.setParent("urn:f"); }},
             {"visible", true, [](auto& project) { project.Visible(true); }},
             {"membership", "M", [](auto& project) { project.setMembership("M"); }},
             {"role", "EDITOR", [](auto& project) { project.setRole("EDITOR"); }},
             {"communityType", "OPEN", [](auto& project) { project.setCommunityType("OPEN"); }},
             {"status", "INACTIVE", [](auto& project) { project.setStatus(ContainerStatus::INACTIVE); }},
             {"status", "DELETED", [](auto& project) { project.setStatus("Deleted"); }},
             {"status", "OTHER", [](auto& project) { project.setStatus(""); }}})
        changed(whole, change);
}

TEST(FilesData, SetterReplacesTheParentType) {
    const FilesData file(JSONNode(R"({"type":"files","parent":{"type":"folders","id":"p"}})"));
    changed(file, {"parentType", "PROJECT", [](FilesData& made) { made.setParentType(ContainerType::PROJECT); }});
}

TEST(FolderData, EachSetterReplacesOneFieldAndEqualityComparesSeven) {
    const FolderData folder(wholeFolder);
    for (const Change<FolderData>& change : std::initializer_list<Change<FolderData>>{
             {"id", "x", [](auto& f) { f.setId("x"); }},
             {"name", "x", [](auto& f) { f.name("x"); }},
             {"parent", "x", [](auto& f) { f.parent("x"); }},
             {"visible", false, [](auto& f) { f.visible(false); }},
             {"status", "ARCHIVED", [](auto& f) { f.status("Archived"); }},
             {"status", "UNSET", [](auto& f) { f.status(ContainerStatus::UNSET); }},
             {"isMember", false, [](auto& f) { f.setMember(false); }},
             {"containerType", "PROJECT", [](auto& f) { f.type(ContainerType::PROJECT); }},
             {"type", "x", [](auto& f) { f.setType("x"); }, true},
             {"href", "x", [](auto& f) { f.setHref("x"); }, true},
             {"membership", "x", [](auto& f) { f.membership("x"); }, true},
             {"allowedActions", {"x"}, [](auto& f) { f.allowedActions({"x"}); }, true}})
        EXPECT_EQ(changed(folder, change) == folder, change.isEqual) << change.field;
}

TEST(FolderData, AssignmentKeepsTheTargetsLinkAndMembership) {
    const FolderData source(wholeFolder);
    Json expected = describe(source);
    EXPECT_EQ(describe(FolderData(source)), expected) << "the copy constructor copies everything";
    FolderData target;
    target.setHref("/mine");
    target.membership("MINE");
    target = source;
    FolderData& self = target;
    target = self;
    target.allowedActions(target.allowedActions());
    expected.update({{"href", "/mine"}, {"membership", "MINE"}});
    EXPECT_EQ(describe(target), expected);
}

const JSONNode root(wholeAssembly());

template <class Document>
Json allAnswers(const Document& document) {
    return answersOf(document, wholeAssemblyIds);
}

TEST(FullAssemblyData, MovingCopiesAndSlicingTakesTheBase) {
    FullAssemblyData source(root);
    const Json all = allAnswers(source);
    FullAssemblyData target = std::move(source);
    EXPECT_EQ(allAnswers(target), all);
    EXPECT_EQ(allAnswers(source), all);
    target = FullAssemblyData();
    EXPECT_EQ(allAnswers(target), allAnswers(FullAssemblyData(JSONNode("{}"))));
    const FullAssemblyDataV3 v3(root);
    target = static_cast<const FullAssemblyData&>(v3);
    EXPECT_EQ(allAnswers(target), all) << "a V2 document treats all its files as referenced";
}

TEST(FullAssemblyDataV3, CopiesShareRelationshipsButNotProjects) {
    const FullAssemblyDataV3 source(root);
    FullAssemblyDataV3 copy;
    copy = source;
    EXPECT_EQ(copy.getAllRelationships(), source.getAllRelationships());
    EXPECT_NE(copy.getProject(wholeAssemblyIds.back()), source.getProject(wholeAssemblyIds.back()));
}

// The query once searched all projects for each file, which took 42 seconds for an answer of 11 MB.
TEST(FullAssemblyData, FindsTheProjectsOfManyFilesQuickly) {
    std::string files;
    std::string projects;
    for (int i = 100'000; i < 130'000; ++i) {
        const std::string number = std::to_string(i);
        files += R"({"type":"files","id":")" + number + R"(","parent":{"id":"x)" + number + R"("}},)";
        projects += R"({"type":"projects","id":"p)" + number + R"("},)";
    }
    const FullAssemblyData document(
        JSONNode(R"({"included":{"files":[)" + files + R"({}],"projects":[)" + projects + "{}]}}"));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(document.getProjectDetailsForFiles().empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

// A locale that an application may set, which groups every digit and has its own words for
// booleans.
struct GroupedNumbers : std::numpunct<wchar_t> {
    std::string do_grouping() const override { return "\1"; }
    std::wstring do_truename() const override { return L"wahr"; }
};

TEST(FullAssemblyAnalytics, WritesFlagsAsDigitsWhateverTheLocale) {
    const std::locale before = std::locale::global(std::locale(std::locale(), new GroupedNumbers));
    const Json event = eventOf(FullAssemblyData(JSONNode(R"({"data":{"restrictedProjects":1234567}})")), L"w 1234567");
    std::locale::global(before);
    EXPECT_EQ(event["hasRestrictedProjects"], "1");
    EXPECT_EQ(event["Workflow"], "w 1234567");
}

} // namespace

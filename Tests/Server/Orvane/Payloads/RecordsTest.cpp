// What records do beyond reading JSON, which Tests/Cases shows.

#include "Base/QxBaseCore10/JSONNode.h"
#include "Tests/Support/Answers.h"

#include <functional>
#include <gtest/gtest.h>
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

const JSONNode wholeFolder(R"({"id":"f","type":"folders","links":{"self":"/f"},"name":"n","parent":"urn:p",
    "visible":true,"status":"Active","containerType":"FOLDER","me":{"isMember":"true","membership":"M",
    "allowed-actions":["view"]}})");

TEST(Records, AreCalledWhatTheServiceCallsThem) {
    EXPECT_EQ(FilesData::dataType() + ' ' + FolderData::dataType() + ' ' + ProjectData::dataType() + ' ' +
                  RelationshipData::dataType() + ' ' + VersionData::dataType(),
              "files folders projects relationships versions");
}

TEST(Records, InitOverwritesOnlyWhatTheNodeCarries) {
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

TEST(Records, MovingLeavesTheSourcesTextsEmptyAndItsOtherFields) {
    ProjectData project(JSONNode(R"({"id":"p","type":"projects","name":"n","visible":true,"status":"Inactive"})"));
    Json all = describe(project);
    EXPECT_EQ(describe(ProjectData(std::move(project))), all);
    all.update({{"id", ""}, {"type", ""}, {"name", ""}});
    EXPECT_EQ(describe(project), all);
}

TEST(ProjectData, SettersReplaceOneFieldEach) {
    ProjectData project;
    Json expected = describe(ProjectData(JSONNode(R"({"status":"Active"})")));
    const std::tuple<const char*, Json, std::function<void()>> changes[] = {
        {"id", "i", [&] { project.setId("i"); }},
        {"type", "t", [&] { project.setType("t"); }},
        {"href", "/p", [&] { project.setHref("/p"); }},
        {"name", "n", [&] { project.setName(L"n"); }},
        {"parent", "urn:f", [&] { project.setParent("urn:f"); }},
        {"visible", true, [&] { project.Visible(true); }},
        {"membership", "M", [&] { project.setMembership("M"); }},
        {"role", "EDITOR", [&] { project.setRole("EDITOR"); }},
        {"communityType", "OPEN", [&] { project.setCommunityType("OPEN"); }},
        {"status", "INACTIVE", [&] { project.setStatus(ContainerStatus::INACTIVE); }},
        {"status", "DELETED", [&] { project.setStatus("Deleted"); }},
        {"status", "OTHER", [&] { project.setStatus(""); }}};
    for (const auto& [field, value, change] : changes) {
        change();
        expected[field] = value;
        EXPECT_EQ(describe(project), expected) << field;
    }
}

TEST(FilesData, SettingTheParentsTypeLeavesItsId) {
    FilesData file(JSONNode(R"({"type":"files","parent":{"type":"folders","id":"p"}})"));
    file.setParentType(ContainerType::PROJECT);
    EXPECT_EQ(file.getParentType(), ContainerType::PROJECT);
    EXPECT_EQ(file.getParentId(), "p");
}

TEST(FolderData, SettersReplaceOneFieldEachAndEqualityLooksAtSeven) {
    const FolderData folder(wholeFolder);
    const std::tuple<const char*, Json, bool, std::function<void(FolderData&)>> changes[] = {
        {"id", "x", false, [](FolderData& f) { f.setId("x"); }},
        {"name", "x", false, [](FolderData& f) { f.name("x"); }},
        {"parent", "x", false, [](FolderData& f) { f.parent("x"); }},
        {"visible", false, false, [](FolderData& f) { f.visible(false); }},
        {"status", "ARCHIVED", false, [](FolderData& f) { f.status("Archived"); }},
        {"status", "UNSET", false, [](FolderData& f) { f.status(ContainerStatus::UNSET); }},
        {"isMember", false, false, [](FolderData& f) { f.setMember(false); }},
        {"containerType", "PROJECT", false, [](FolderData& f) { f.type(ContainerType::PROJECT); }},
        {"type", "x", true, [](FolderData& f) { f.setType("x"); }},
        {"href", "x", true, [](FolderData& f) { f.setHref("x"); }},
        {"membership", "x", true, [](FolderData& f) { f.membership("x"); }},
        {"allowedActions", {"x"}, true, [](FolderData& f) { f.allowedActions({"x"}); }}};
    for (const auto& [field, value, isEqual, change] : changes) {
        FolderData changed(folder);
        change(changed);
        Json expected = describe(folder);
        expected[field] = value;
        EXPECT_EQ(describe(changed), expected) << field;
        EXPECT_EQ(changed == folder, isEqual) << field;
    }
}

TEST(FolderData, AssignmentLeavesTheTargetsLinkAndMembership) {
    const FolderData source(wholeFolder);
    Json expected = describe(source);
    EXPECT_EQ(describe(FolderData(source)), expected) << "the copy constructor takes all";
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

} // namespace

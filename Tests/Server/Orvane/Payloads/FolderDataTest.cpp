#include "Server/Orvane/Payloads/FolderData.h"

#include "Tests/Support/Json.h"

#include <functional>
#include <gtest/gtest.h>
#include <type_traits>

namespace {

using Orvane::Payloads::ContainerStatus;
using Orvane::Payloads::ContainerType;
using Orvane::Payloads::FolderData;

static_assert(!std::is_nothrow_move_constructible_v<FolderData>, "moving a folder copies it");
static_assert(!std::is_polymorphic_v<FolderData>);

// "id type link name parent status containerType membership [actions]", and a word for each flag that is set.
std::string describe(const FolderData& folder) {
    const char* const statuses[] = {"ACTIVE", "ARCHIVED", "INACTIVE", "DELETED", "OTHER", "UNSET"};
    const char* const types[] = {"OTHER", "FOLDER", "PROJECT"};
    std::string actions;
    for (const std::string& action : folder.allowedActions())
        actions += action + ';';
    return folder.getId() + ' ' + folder.getType() + ' ' + folder.getHref() + ' ' + folder.name() + ' ' +
           folder.parent() + ' ' + statuses[static_cast<int>(folder.status())] + ' ' +
           types[static_cast<int>(folder.type())] + ' ' + folder.membership() + " [" + actions + ']' +
           (folder.visible() ? " visible" : "") + (folder.isMember() ? " member" : "");
}

const char* const wholeFolder =
    R"({"id":"f","type":"folders","links":{"self":"/f"},"name":"n","parent":"urn:p",
    "visible":true,"status":"Active","containerType":"FOLDER","me":{"isMember":"true","membership":"M",
    "allowed-actions":["write","view","zelvar:ft:share","view"]}})";

TEST(FolderData, ReadsItsJSON) {
    const std::pair<const char*, const char*> cases[] = {
        {wholeFolder, "f folders /f n urn:p ACTIVE FOLDER M [view;write;zelvar:ft:share;] visible member"},
        {"{}", "     UNSET OTHER  []"},
        {R"({"type":"folders"})", " folders    OTHER OTHER  []"},
        {R"({"id":"f","type":"files","links":{"self":"/f"},"name":"n","status":"Active","me":{"isMember":true}})",
         "f files /f   UNSET OTHER  []"},
        {R"({"type":"folders","status":"Archived","containerType":"folders","me":null})",
         " folders    ARCHIVED FOLDER  []"},
        {R"({"type":"folders","status":"Inactive","containerType":"projects","links":null})",
         " folders    INACTIVE PROJECT  []"},
        {R"({"type":"folders","status":"Deleted","containerType":"PROJECT","me":{"isMember":true}})",
         " folders    DELETED PROJECT  [] member"},
        {R"({"type":"folders","status":"active","containerType":"Folder",
             "me":{"membership":"M","allowed-actions":["read"]}})",
         " folders    OTHER OTHER M [read;]"},
        {R"({"type":"folders","status":"","me":{"isMember":"True","allowed-actions":"read"}})",
         " folders    OTHER OTHER  []"},
        {R"({"type":"folders","status":3,"me":{"isMember":1,"allowed-actions":["read",null,1,""]}})",
         " folders    OTHER OTHER  [;1;read;]"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(describe(FolderData(json(text))), expected) << text;
    EXPECT_EQ(FolderData::dataType(), "folders");
    EXPECT_TRUE(FolderData(json(wholeFolder)).hasPermission("view"));
    EXPECT_FALSE(FolderData(json(wholeFolder)).hasPermission("View"));
    EXPECT_FALSE(FolderData().isValid());
    EXPECT_TRUE(FolderData(json(R"({"type":"folders"})")).isValid()) << "its status is no longer unset";
}

TEST(FolderData, EqualityLooksAtSevenFieldsOnly) {
    const FolderData folder(json(wholeFolder));
    const std::pair<std::function<void(FolderData&)>, bool> changes[] = {
        {[](FolderData& f) { f.setId("other"); }, false},
        {[](FolderData& f) { f.name("other"); }, false},
        {[](FolderData& f) { f.parent("other"); }, false},
        {[](FolderData& f) { f.visible(false); }, false},
        {[](FolderData& f) { f.status("Archived"); }, false},
        {[](FolderData& f) { f.status(ContainerStatus::UNSET); }, false},
        {[](FolderData& f) { f.setMember(false); }, false},
        {[](FolderData& f) { f.type(ContainerType::PROJECT); }, false},
        {[](FolderData& f) { f.setType("other"); }, true},
        {[](FolderData& f) { f.setHref("other"); }, true},
        {[](FolderData& f) { f.membership("other"); }, true},
        {[](FolderData& f) { f.allowedActions({"other"}); }, true},
    };
    for (std::size_t i = 0; i < std::size(changes); ++i) {
        FolderData changed(folder);
        changes[i].first(changed);
        EXPECT_EQ(changed == folder, changes[i].second) << "change " << i;
        EXPECT_NE(describe(changed), describe(folder)) << "change " << i;
    }
}

TEST(FolderData, AssignmentLeavesLinkAndMembershipOfTheTarget) {
    const FolderData source(json(wholeFolder));
    EXPECT_EQ(describe(FolderData(source)), describe(source)) << "the copy constructor takes all";
    FolderData target;
    target.setHref("/mine");
    target.membership("MINE");
    target = source;
    FolderData& self = target;
    target = self;
    target.allowedActions(target.allowedActions());
    EXPECT_EQ(describe(target),
              "f folders /mine n urn:p ACTIVE FOLDER MINE [view;write;zelvar:ft:share;] visible member");
}

} // namespace

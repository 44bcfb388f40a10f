#include "Server/Orvane/Payloads/ProjectData.h"

#include "Base/QxBaseCore10/Strings.h"
#include "Tests/Support/Json.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

using Orvane::Payloads::ContainerStatus;
using Orvane::Payloads::ProjectData;

static_assert(std::is_nothrow_move_constructible_v<ProjectData>);
static_assert(!std::is_polymorphic_v<ProjectData>);

// "id type link name parent status membership role community", and a word for each test that holds.
std::string describe(const ProjectData& project) {
    const char* const statuses[] = {"ACTIVE", "ARCHIVED", "INACTIVE", "DELETED", "OTHER", "UNSET"};
    return project.getId() + ' ' + project.getType() + ' ' + project.getHref() + ' ' +
           Qx::ToHString(project.getName()) + ' ' + project.getParent() + ' ' +
           statuses[static_cast<int>(project.getStatus())] + ' ' + project.getMembership() + ' ' + project.getRole() +
           ' ' + project.getCommunityType() + (project.Visible() ? " visible" : "") +
           (project.IsMember() ? " member" : "") + (project.IsViewerRole() ? " viewer" : "") +
           (project.isControlledProject() ? " controlled" : "");
}

TEST(ProjectData, ReadsItsJSON) {
    const std::pair<const char*, const char*> cases[] = {
        {R"("id":"p","type":"projects","name":"\u6b6f","visible":true,"parent":"urn:f","status":"Archived",
            "communityType":"CONTROLLED","me":{"membership":"M","role":"VIEWER","isMember":"true"},
            "links":{"self":"/p"})",
         "p projects /p \xE6\xAD\xAF urn:f ARCHIVED M VIEWER CONTROLLED visible member viewer controlled"},
        {R"("id":"p","type":"Projects","links":{"self":"/p"},"name":"n","status":"Deleted")",
         "p Projects    ACTIVE   "},
        {R"("type":"projects","me":null,"links":null)", " projects    ACTIVE   "},
        {R"("type":"projects","status":"Frozen","me":{"isMember":true,"role":"VIEWERS"})",
         " projects    OTHER  VIEWERS  member"},
        {R"("type":"projects","status":null,"me":{"isMember":"TRUE"},"communityType":"Controlled")",
         " projects    OTHER   Controlled"},
        {R"("type":"projects","me":{"isMember":false})", " projects    ACTIVE   "},
    };
    for (const auto& [members, expected] : cases)
        EXPECT_EQ(describe(ProjectData(json("{" + std::string(members) + "}"))), expected) << members;
    EXPECT_EQ(describe(ProjectData()), "     ACTIVE   ");
    EXPECT_EQ(ProjectData::dataType(), "projects");
}

TEST(ProjectData, SettersReplaceOneFieldEach) {
    ProjectData project;
    project.setName(L"n");
    project.setParent("urn:f");
    project.setStatus(ContainerStatus::INACTIVE);
    project.setMembership("M");
    project.setRole("VIEWER");
    project.setCommunityType("OPEN");
    project.Visible(true);
    EXPECT_EQ(describe(project), "   n urn:f INACTIVE M VIEWER OPEN visible viewer");
}

TEST(ProjectData, MovingTakesTheTextsAndSetStatusTakesOnlyKnownOnes) {
    ProjectData project(json(R"({"type":"projects","name":"n","visible":true,"status":"Inactive"})"));
    ProjectData moved = std::move(project);
    EXPECT_EQ(describe(moved), " projects  n  INACTIVE    visible");
    EXPECT_EQ(describe(project), "     INACTIVE    visible") << "texts move, the rest stays";
    moved.setStatus("Deleted");
    EXPECT_EQ(moved.getStatus(), ContainerStatus::DELETED);
    moved.setStatus("");
    EXPECT_EQ(moved.getStatus(), ContainerStatus::OTHER);
}

} // namespace

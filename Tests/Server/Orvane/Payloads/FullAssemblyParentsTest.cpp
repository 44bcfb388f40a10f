#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include "Tests/Support/Documents.h"

#include <gtest/gtest.h>

namespace {

using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;

Qx::JSONNode rootWith(const std::string& projects, const std::string& folders) {
    DocumentParts parts;
    parts.projects = projects;
    parts.folders = folders;
    return parts.root();
}

// "archived inactive deleted count denied".
std::string describe(const FullAssemblyData& document) {
    return listed(document.getArchivedParents()) + ' ' + listed(document.getInactiveParents()) + ' ' +
           listed(document.getDeletedParents()) + ' ' + std::to_string(document.getDeletedParentsCount()) + ' ' +
           listed(document.getAccessDeniedParents());
}

TEST(FullAssemblyParents, ListsEachStatusWithFoldersByIdBehindProjects) {
    const Qx::JSONNode root = rootWith(
        R"({"type":"projects","name":"d","status":"Deleted"},{"type":"projects","name":"a","status":"Archived"},
           {"type":"projects","name":"i","status":"Inactive"},{"type":"projects","name":"x","status":"deleted"},
           {"type":"projects","name":"d","status":"Deleted"},{"type":"projects","status":"Deleted"})",
        R"({"id":"f-z","type":"folders","name":"z","status":"Deleted"},{"id":"f-d","type":"folders","status":"Deleted"},
           {"id":"f-a","type":"folders","name":"a","status":"Archived"},{"id":"f-x","type":"folders","name":"x"},
           {"id":"f-i","type":"folders","name":"i","status":"Inactive"})");
    EXPECT_EQ(describe(FullAssemblyData(root)), "a; i; d;d;; 3 ");
    EXPECT_EQ(describe(FullAssemblyDataV3(root)), "a;f-a; i;f-i; d;d;;f-d;f-z; 5 ") << "through the base too";
    EXPECT_EQ(describe(FullAssemblyDataV3()), "   0 ");
}

TEST(FullAssemblyParents, DeniesActiveProjectsToAllButWorkingMembers) {
    const std::pair<const char*, const char*> cases[] = {
        {R"("me":{"isMember":"true","role":"PROJECT_ADMIN"})", ""},
        {R"("me":{"isMember":true})", ""},
        {R"("me":{"isMember":"true","role":"VIEWER"})", "P;"},
        {R"("me":{"isMember":"false","role":"PROJECT_ADMIN"})", "P;"},
        {R"("me":{"role":"EDITOR"})", "P;"},
        {R"("me":null)", "P;"},
        {R"("status":"Inactive")", ""},
        {R"("status":"Frozen")", ""},
    };
    for (const auto& [members, denied] : cases) {
        const std::string project = R"({"type":"projects","name":"P",)" + std::string(members) + "}";
        EXPECT_EQ(listed(FullAssemblyData(rootWith(project, "")).getAccessDeniedParents()), denied) << members;
    }
}

TEST(FullAssemblyParents, DeniesActiveFoldersWithoutReadByNameBehindProjects) {
    const FullAssemblyDataV3 document(
        rootWith(R"({"type":"projects","name":"P"})",
                 R"({"id":"1","type":"folders","name":"open","status":"Active","me":{"allowed-actions":["read"]}},
           {"id":"3","type":"folders","name":"a","status":"Active","me":{"allowed-actions":["Read","readable"]}},
           {"id":"2","type":"folders","name":"z","status":"Active"},{"id":"4","type":"folders","name":"no status"},
           {"id":"5","type":"folders","name":"old","status":"Archived"})"));
    EXPECT_EQ(describe(document), "5;   0 P;z;a;");
}

} // namespace

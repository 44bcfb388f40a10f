#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include "Tests/Support/Documents.h"

#include <gtest/gtest.h>

namespace {

using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;
using List = std::vector<std::wstring>;

std::string project(const std::string& name, const std::string& members) {
    return R"({"id":"p-)" + name + R"(","type":"projects","name":")" + name + "\"" + members + "}";
}

std::string folder(const std::string& name, const std::string& members) {
    return R"({"id":"f-)" + name + R"(","type":"folders","name":")" + name + "\"" + members + "}";
}

std::string status(const std::string& text) {
    return R"(,"status":")" + text + "\"";
}

Qx::JSONNode rootWith(const std::string& projects, const std::string& folders) {
    DocumentParts parts;
    parts.projects = "[" + projects + "]";
    parts.folders = "[" + folders + "]";
    return parts.root();
}

TEST(FullAssemblyParents, ListsEachStatusWithFoldersByIdBehindProjects) {
    const Qx::JSONNode root = rootWith(project("del", status("Deleted")) + "," + project("arc", status("Archived")) +
                                           "," + project("ina", status("Inactive")) + "," +
                                           project("none", status("deleted")) + "," + project("del", status("Deleted")),
                                       folder("z", status("Deleted")) + "," + folder("a", status("Deleted")) + "," +
                                           folder("arc", status("Archived")) + "," + folder("ina", status("Inactive")) +
                                           "," + folder("none", ""));
    const FullAssemblyData first(root);
    EXPECT_EQ(first.getDeletedParents(), (List{L"del", L"del"}));
    EXPECT_EQ(first.getDeletedParentsCount(), 2);
    EXPECT_EQ(first.getArchivedParents(), List{L"arc"});
    EXPECT_EQ(first.getInactiveParents(), List{L"ina"});

    const FullAssemblyDataV3 v3(root);
    const FullAssemblyData& asFirst = v3;
    EXPECT_EQ(asFirst.getDeletedParents(), (List{L"del", L"del", L"f-a", L"f-z"}));
    EXPECT_EQ(asFirst.getDeletedParentsCount(), 4);
    EXPECT_EQ(asFirst.getArchivedParents(), (List{L"arc", L"f-arc"}));
    EXPECT_EQ(asFirst.getInactiveParents(), (List{L"ina", L"f-ina"}));
    EXPECT_EQ(v3.getAccessDeniedParents(), List{}) << "none of them is active";
}

TEST(FullAssemblyParents, DeniesActiveProjectsToAllButWorkingMembers) {
    struct Case {
        const char* members;
        bool denied;
    };
    for (const Case& expected :
         {Case{R"(,"me":{"isMember":"true","role":"PROJECT_ADMIN"})", false}, Case{R"(,"me":{"isMember":true})", false},
          Case{R"(,"me":{"isMember":"true","role":"VIEWER"})", true},
          Case{R"(,"me":{"isMember":"false","role":"PROJECT_ADMIN"})", true}, Case{R"(,"me":{"role":"EDITOR"})", true},
          Case{"", true}, Case{R"(,"status":"Archived")", false}, Case{R"(,"status":"Frozen")", false}}) {
        const FullAssemblyData document(rootWith(project("P", expected.members), ""));
        EXPECT_EQ(document.getAccessDeniedParents(), expected.denied ? List{L"P"} : List{}) << expected.members;
    }
}

TEST(FullAssemblyParents, DeniesActiveFoldersWithoutReadByName) {
    const auto me = [](const char* actions) {
        return status("Active") + R"(,"me":{"isMember":"true","allowed-actions":[)" + actions + "]}";
    };
    const FullAssemblyDataV3 document(
        rootWith(project("P", ""), folder("open", me(R"("read")")) + "," + folder("z", me(R"("Read","readable")")) +
                                       "," + folder("none", "") + "," + folder("a", status("Active")) + "," +
                                       folder("arc", status("Archived"))));
    EXPECT_EQ(document.getAccessDeniedParents(), (List{L"P", L"a", L"z"}));
    EXPECT_EQ(document.getArchivedParents(), List{L"f-arc"});
}

TEST(FullAssemblyParents, NamelessParentsCount) {
    const FullAssemblyData document(rootWith(R"({"type":"projects","status":"Deleted"})", ""));
    EXPECT_EQ(document.getDeletedParents(), List{L""});
    EXPECT_EQ(document.getDeletedParentsCount(), 1);
}

} // namespace

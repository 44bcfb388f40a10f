#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include "Tests/Support/Documents.h"
#include "Tests/Support/ScopedState.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;
using Properties = std::unordered_map<std::wstring, std::wstring>;

Properties reported(const FullAssemblyData& document, const std::wstring& workflow) {
    ScopedEvents events;
    document.sendFullAssemblyAnalytics(workflow);
    EXPECT_EQ(events.tracked.size(), 1U);
    EXPECT_TRUE(events.allNow);
    EXPECT_EQ(events.tracked.at(0).eventName, L"FullAssembly");
    return events.tracked.at(0).properties;
}

// The five flags in the order of their names: access denied, archived, deleted, inaccessible, restricted.
std::wstring flags(const Properties& properties) {
    return properties.at(L"hasAccessDeniedProjects") + properties.at(L"hasArchivedProjects") +
           properties.at(L"hasDeletedProjects") + properties.at(L"hasInaccessibleProjects") +
           properties.at(L"hasRestrictedProjects");
}

TEST(FullAssemblyAnalytics, EmptyDocumentsGiveAFullReport) {
    const Properties first = reported(FullAssemblyData(), L"");
    EXPECT_EQ(first.size(), 7U);
    EXPECT_EQ(first.at(L"Version"), L"V2");
    EXPECT_EQ(first.at(L"Workflow"), L"");
    EXPECT_EQ(flags(first), L"00000");

    const Properties third = reported(FullAssemblyDataV3(json("{}")), L"open \u6B6F");
    EXPECT_EQ(third.size(), 8U);
    EXPECT_EQ(third.at(L"Version"), L"V3");
    EXPECT_EQ(third.at(L"Workflow"), L"open \u6B6F");
    EXPECT_EQ(third.at(L"assemblyProjectType"), L"UNKNOWN");
    EXPECT_EQ(flags(third), L"00000");
}

TEST(FullAssemblyAnalytics, EachFlagHasItsCause) {
    const std::tuple<const char*, const char*, const char*, const wchar_t*> cases[] = {
        {R"({"type":"projects"})", "", R"("x":0)", L"10000"},
        {R"({"type":"projects","status":"Archived"})", "", R"("x":0)", L"01000"},
        {R"({"type":"projects","status":"Deleted"})", "", R"("x":0)", L"00100"},
        {R"({"type":"projects","status":"Inactive"})", "", R"("x":0)", L"00000"},
        {"", R"({"type":"folders","status":"Active"})", R"("x":0)", L"10000"},
        {"", R"({"type":"folders","status":"Archived"})", R"("x":0)", L"01000"},
        {"", R"({"type":"folders","status":"Deleted"})", R"("x":0)", L"00100"},
        {"", "", R"("inaccessibleProjects":1)", L"00010"},
        {"", "", R"("restrictedProjects":1)", L"00001"},
        {"", "", R"("inaccessibleProjects":-1,"restrictedProjects":-1)", L"00000"},
    };
    for (const auto& [project, folder, counts, expected] : cases) {
        DocumentParts parts;
        parts.projects = project;
        parts.folders = folder;
        parts.counts = counts;
        EXPECT_EQ(flags(reported(FullAssemblyDataV3(parts.root()), L"w")), expected) << project << folder << counts;
    }
}

TEST(FullAssemblyAnalytics, ProjectTypeIsThatOfTheOwnFile) {
    const std::string ownVersion = R"({"id":"own","type":"versions","file":{"id":"file"}})";
    const std::string inProject = R"({"id":"file","type":"files","parent":{"id":"p"}})";
    const std::string open = R"({"id":"p","type":"projects","communityType":"OPEN"})";
    const std::string untold = R"({"id":"p","type":"projects"})";
    const std::string controlled = R"({"id":"p","type":"projects","communityType":"CONTROLLED"})";
    const std::string folder = R"({"id":"p","type":"folders","status":"Deleted"})";
    const std::tuple<std::string, std::string, std::string, std::string, const wchar_t*> cases[] = {
        {"", inProject, open, "", L"UNKNOWN"},
        {ownVersion, "", open, "", L"UNKNOWN"},
        {ownVersion, inProject, "", "", L"UNKNOWN"},
        {ownVersion, inProject, open, "", L"OPEN"},
        {ownVersion, inProject, untold, "", L""},
        {ownVersion, inProject, controlled, "", L"CONTROLLED"},
        {ownVersion, inProject, open, folder, L"CONTROLLED"},
    };
    for (const auto& [versions, files, projects, folders, type] : cases) {
        DocumentParts parts;
        parts.id = "own";
        parts.versions = versions;
        parts.files = files;
        parts.projects = projects;
        parts.folders = folders;
        EXPECT_EQ(reported(FullAssemblyDataV3(parts.root()), L"w").at(L"assemblyProjectType"), type) << projects;
    }
}

} // namespace

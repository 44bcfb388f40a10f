#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include "Tests/Support/Documents.h"

#include <chrono>
#include <gtest/gtest.h>

namespace {

using Orvane::Payloads::FullAssemblyDataV3;

TEST(FullAssemblyLookups, FindByWholeIdsAndOfRepeatedProjectsTheFirstOrTheFirstActive) {
    DocumentParts parts;
    parts.projects =
        R"({"id":"p","type":"projects","name":"deleted","status":"Deleted","me":{"membership":"D"}},
                         {"id":"p","type":"projects","name":"active","status":"Active","me":{"membership":"A"}},
                         {"id":"p","type":"projects","name":"later","status":"Active","me":{"membership":"L"}},
                         {"id":"q","type":"projects","name":"plain"},
                         {"type":"projects","name":"no id","status":"Archived","me":{"membership":"N"}})";
    parts.files = R"({"id":"1","type":"files","parent":{"type":"projects"},"project":{"id":"p"}},
                      {"id":"2","type":"files","parent":{"type":"projects"},"project":{"id":"p"}},
                      {"id":"3","type":"files","parent":{"type":"folders","id":"urn:vrnk.dorlqa:fs.folder:folderA"}},
                      {"id":"4","type":"files","parent":{"type":"OTHER","id":"q"}},
                      {"id":"","type":"files","name":"no id"})";
    const FullAssemblyDataV3 document(parts.root());
    EXPECT_EQ(document.getFileById("urn:vrnk.dorlqa:fs.file:A?version=3"), nullptr) << "ids of a kind find only it";
    EXPECT_EQ(document.getFolder("urn:vrnk.dorlqa:fs.folder:FOLDERA"), nullptr);
    EXPECT_EQ(document.getProject("1"), nullptr);
    EXPECT_EQ(document.getProjectName("P"), L"");
    EXPECT_EQ(document.getProjectName("p"), L"deleted");
    EXPECT_EQ(document.getProject("p")->getName(), L"deleted");
    EXPECT_EQ(document.getProject("")->getName(), L"no id");
    EXPECT_EQ(document.projectMembership("p"), "A");
    EXPECT_EQ(document.projectMembership("q"), "");
    EXPECT_EQ(document.projectMembership(""), "") << "not active";
    EXPECT_EQ(document.getFileById("")->getName(), L"no id");

    const auto details = document.getProjectDetails();
    EXPECT_EQ(details.size(), 3U);
    EXPECT_EQ(details.at("p").getName(), L"deleted");

    const std::unordered_map<std::wstring, std::string> memberships{{L"p", "A"}, {L"q", ""}};
    EXPECT_EQ(document.getProjectMemberships(), memberships);

    const auto byFile = document.getProjectDetailsForFiles();
    EXPECT_EQ(byFile.size(), 4U) << "files 1, 2 and 4, and the one without a parent in the project without an id";
    EXPECT_EQ(byFile.at("1").getName(), L"deleted");
    EXPECT_EQ(byFile.at("2").getName(), L"deleted");
    EXPECT_EQ(byFile.at("4").getName(), L"plain");
    EXPECT_EQ(byFile.at("").getName(), L"no id");
}

// Each file's project was once searched among all: an answer of 11 MB kept the query busy for 42 seconds.
TEST(FullAssemblyLookups, ProjectsOfManyFilesAreFoundInTime) {
    DocumentParts parts;
    for (int i = 0; i < 30'000; ++i) {
        const std::string number = std::to_string(100'000 + i);
        parts.files += R"(,{"type":"files","id":")" + number + R"(","parent":{"id":"x)" + number + R"("}})";
        parts.projects += R"(,{"type":"projects","id":"p)" + number + R"("})";
    }
    const FullAssemblyDataV3 document(parts.root());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(document.getProjectDetailsForFiles().size(), 1U);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

} // namespace

// What documents do beyond reading and answering, which Tests/Cases shows; V3 documents are moved in
// Fuzz/AssemblyFuzzer.cpp.

#include "Base/QxBaseCore10/JSONNode.h"
#include "Tests/Support/Answers.h"
#include "Tests/Support/Cases.h"

#include <chrono>
#include <gtest/gtest.h>
#include <locale>
#include <type_traits>

namespace {

using namespace Orvane::Payloads;

static_assert(std::has_virtual_destructor_v<FullAssemblyData>);
static_assert(!std::is_convertible_v<FullAssemblyData*, Links*>, "its link is its own affair");
static_assert(!std::is_nothrow_move_constructible_v<FullAssemblyData>, "moving a document copies it");
static_assert(std::is_convertible_v<FullAssemblyDataV3*, FullAssemblyData*>);

const std::string folderId = "urn:vrnk.dorlqa:fs.folder:folderA";
const std::string projectId = "1234567890123456";
const Qx::JSONNode root(wholeAssembly());

template <class Document>
Json allAnswers(const Document& document) {
    return answersOf(document, {folderId, projectId});
}

TEST(FullAssemblyData, MovingCopiesAndSlicingTakesTheBase) {
    FullAssemblyData source(root);
    const Json all = allAnswers(source);
    FullAssemblyData target = std::move(source);
    EXPECT_EQ(allAnswers(target), all);
    EXPECT_EQ(allAnswers(source), all);
    target = FullAssemblyData();
    EXPECT_EQ(allAnswers(target), allAnswers(FullAssemblyData(Qx::JSONNode("{}"))));
    const FullAssemblyDataV3 v3(root);
    target = static_cast<const FullAssemblyData&>(v3);
    EXPECT_EQ(allAnswers(target), all) << "all files count as referenced";
}

TEST(FullAssemblyDataV3, CopiesShareRelationshipsButNotProjects) {
    const FullAssemblyDataV3 source(root);
    FullAssemblyDataV3 copy;
    copy = source;
    EXPECT_EQ(copy.getAllRelationships(), source.getAllRelationships());
    EXPECT_NE(copy.getProject(projectId), source.getProject(projectId));
}

// Each file's project was once searched among all: an answer of 11 MB kept the query busy for 42 seconds.
TEST(FullAssemblyData, FindsTheProjectsOfManyFilesInTime) {
    std::string files;
    std::string projects;
    for (int i = 100'000; i < 130'000; ++i) {
        const std::string number = std::to_string(i);
        files += R"({"type":"files","id":")" + number + R"(","parent":{"id":"x)" + number + R"("}},)";
        projects += R"({"type":"projects","id":"p)" + number + R"("},)";
    }
    const FullAssemblyData document(
        Qx::JSONNode(R"({"included":{"files":[)" + files + R"({}],"projects":[)" + projects + "{}]}}"));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(document.getProjectDetailsForFiles().empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

// A host's locale that groups every digit and has words of its own for flags.
struct GroupedNumbers : std::numpunct<wchar_t> {
    std::string do_grouping() const override { return "\1"; }
    std::wstring do_truename() const override { return L"wahr"; }
};

TEST(FullAssemblyAnalytics, WritesFlagsAsDigitsWhateverTheLocale) {
    const std::locale before = std::locale::global(std::locale(std::locale(), new GroupedNumbers));
    const Json event =
        eventOf(FullAssemblyData(Qx::JSONNode(R"({"data":{"restrictedProjects":1234567}})")), L"w 1234567");
    std::locale::global(before);
    EXPECT_EQ(event["hasRestrictedProjects"], "1");
    EXPECT_EQ(event["Workflow"], "w 1234567");
}

} // namespace

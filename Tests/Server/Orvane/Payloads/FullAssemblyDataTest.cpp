#include "Server/Orvane/Payloads/FullAssemblyData.h"

#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"
#include "Tests/Support/Documents.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::Links;

static_assert(std::has_virtual_destructor_v<FullAssemblyData>);
static_assert(!std::is_convertible_v<FullAssemblyData*, Links*>, "the link of a document is its own affair");
static_assert(!std::is_nothrow_move_constructible_v<FullAssemblyData>, "moving a document copies it");

// The ids of all that the document holds, as the queries tell them.
std::string summary(const FullAssemblyData& document) {
    std::string text = document.getId() + "/" + document.getType() + "/" +
                       std::to_string(document.getInaccessibleParents()) + "/" +
                       std::to_string(document.getRestrictedParents()) + " projects";
    for (const std::wstring& name : document.getAccessDeniedParents())
        text += " " + std::string(name.begin(), name.end());
    text += " files";
    const auto files = document.getDirectReferencedFiles();
    for (const auto& [id, name] : std::map<std::string, std::wstring>(files.begin(), files.end()))
        text += " " + id + "=" + std::string(name.begin(), name.end());
    return text;
}

TEST(FullAssemblyData, ReadsWhatIsThere) {
    const std::string project = R"({"id":"p","type":"projects","name":"P"})";
    const std::string file = R"({"id":"f","type":"files","name":"F"})";
    const std::string included = R"("included":{"projects":[)" + project + R"(],"files":[)" + file + "]}";
    const std::pair<std::string, const char*> cases[] = {
        {R"({ "results": "yes" })", "//0/0 projects files"},
        {"[1]", "//0/0 projects files"},
        {R"({"data":{"id":"d","type":"versions","inaccessibleProjects":3,"restrictedProjects":-1}})",
         "d/versions/3/-1 projects files"},
        {R"({"inaccessibleProjects":3,"data":{"inaccessibleProjects":null,"restrictedProjects":"2","links":null}})",
         "//0/0 projects files"},
        {R"({"data":null,)" + included + "}", "//0/0 projects P files f=F"},
        {R"({"data":{"id":"d"},"included":null})", "d//0/0 projects files"},
        {R"({"included":[)" + project + "]}", "//0/0 projects files"},
        {R"({"included":{"projects":null,"files":[)" + file + "]}}", "//0/0 projects files f=F"},
        {R"({"included":{"projects":{"0":)" + project + R"(},"files":{}}})", "//0/0 projects files"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(summary(FullAssemblyData(json(text))), expected) << text;
    EXPECT_EQ(summary(FullAssemblyData()), "//0/0 projects files");
}

TEST(FullAssemblyData, SkipsElementsOfAnotherType) {
    DocumentParts parts;
    parts.id = "d";
    parts.projects =
        R"([{"id":"1"},{"id":"2","type":""},{"id":"3","type":"Projects"},{"id":"4","type":"files"},
                         "projects",null,{"id":"5","type":"projects","name":"P"}])";
    parts.files = R"([{"id":"1","name":"x"},{"id":"2","type":"projects","name":"x"},[],
                      {"id":"3","type":"files","name":"F"}])";
    EXPECT_EQ(summary(FullAssemblyData(parts.root())), "d/versions/0/0 projects P files 3=F");
}

TEST(FullAssemblyData, OfRepeatedFilesTheFirstStaysAndRepeatedProjectsAllStay) {
    DocumentParts parts;
    parts.id = "d";
    parts.projects = R"([{"id":"p","type":"projects","name":"P1"},{"id":"p","type":"projects","name":"P2"}])";
    parts.files = R"([{"id":"f","type":"files","name":"first"},{"id":"f","type":"files","name":"second"},
                      {"type":"files","name":"nameless"},{"type":"files","name":"dropped"}])";
    EXPECT_EQ(summary(FullAssemblyData(parts.root())), "d/versions/0/0 projects P1 P2 files =nameless f=first");
}

TEST(FullAssemblyData, CopiesAndMovesAlikeAndSlicesAV3Document) {
    FullAssemblyData source(DocumentParts().root());
    const std::string all = summary(source);
    const FullAssemblyData moved = std::move(source);
    EXPECT_EQ(summary(moved), all);
    EXPECT_EQ(summary(source), all) << "moving copies";
    FullAssemblyData target(json(R"({"data":{"id":"old"},"included":{"files":[{"id":"old","type":"files"}]}})"));
    target = moved;
    EXPECT_EQ(summary(target), all);
    FullAssemblyData& self = target;
    target = self;
    EXPECT_EQ(summary(target), all);
    const Orvane::Payloads::FullAssemblyDataV3 v3(DocumentParts().root());
    const FullAssemblyData& base = v3;
    target = base;
    EXPECT_EQ(summary(target), all) << "the base part alone, so all files count as referenced";
}

} // namespace

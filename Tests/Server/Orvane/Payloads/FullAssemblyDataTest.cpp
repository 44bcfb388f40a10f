#include "Server/Orvane/Payloads/FullAssemblyData.h"

#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"
#include "Tests/Support/Documents.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

using Orvane::Payloads::FullAssemblyData;

static_assert(std::has_virtual_destructor_v<FullAssemblyData>);
static_assert(!std::is_convertible_v<FullAssemblyData*, Orvane::Payloads::Links*>, "its link is its own affair");
static_assert(!std::is_nothrow_move_constructible_v<FullAssemblyData>, "moving a document copies it");

// "id/type/inaccessible/restricted projects files", the projects of no member by name.
std::string describe(const FullAssemblyData& document) {
    return document.getId() + '/' + document.getType() + '/' + std::to_string(document.getInaccessibleParents()) + '/' +
           std::to_string(document.getRestrictedParents()) + ' ' + listed(document.getAccessDeniedParents()) + ' ' +
           listed(document.getDirectReferencedFiles());
}

TEST(FullAssemblyData, ReadsWhatIsThereAndOfTheRightType) {
    const std::pair<const char*, const char*> cases[] = {
        {R"({ "results": "yes" })", "//0/0  "},
        {R"([1])", "//0/0  "},
        {R"({"data":{"id":"d","type":"versions","inaccessibleProjects":3,"restrictedProjects":-1}})",
         "d/versions/3/-1  "},
        {R"({"inaccessibleProjects":3,"data":{"inaccessibleProjects":null,"restrictedProjects":"2","links":null}})",
         "//0/0  "},
        {R"({"data":null,"included":{"projects":[{"type":"projects","name":"P"}],"files":[{"id":"f","type":"files"}]}})",
         "//0/0 P; f=;"},
        {R"({"data":{"id":"d"},"included":null})", "d//0/0  "},
        {R"({"included":[{"type":"projects"}]})", "//0/0  "},
        {R"({"included":{"projects":null,"files":[{"id":"f","type":"files","name":"F"}]}})", "//0/0  f=F;"},
        {R"({"included":{"projects":{"0":{"type":"projects","name":"P"}},"files":{}}})", "//0/0  "},
        {R"({"included":{"projects":[{"name":"1"},{"type":"","name":"2"},{"type":"Projects","name":"3"},"projects",null,
             {"type":"files","name":"4"},{"type":"projects","name":"P"}]}})",
         "//0/0 P; "},
        {R"({"included":{"files":[{"id":"1"},{"id":"2","type":"projects"},[],{"id":"3","type":"files","name":"F"}]}})",
         "//0/0  3=F;"},
        {R"({"included":{"projects":[{"id":"p","type":"projects","name":"1"},{"id":"p","type":"projects","name":"2"}],
             "files":[{"id":"f","type":"files","name":"first"},{"id":"f","type":"files","name":"second"},
                      {"type":"files","name":"no id"},{"type":"files","name":"dropped"}]}})",
         "//0/0 1;2; =no id;f=first;"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(describe(FullAssemblyData(json(text))), expected) << text;
    EXPECT_EQ(describe(FullAssemblyData()), "//0/0  ");
}

TEST(FullAssemblyData, MovingCopiesAndSlicingTakesTheBase) {
    FullAssemblyData source(DocumentParts().root());
    const std::string all = describe(source);
    FullAssemblyData target = std::move(source);
    EXPECT_EQ(describe(target), all);
    EXPECT_EQ(describe(source), all) << "moving copies";
    target = FullAssemblyData();
    const Orvane::Payloads::FullAssemblyDataV3 v3(DocumentParts().root());
    target = static_cast<const FullAssemblyData&>(v3);
    EXPECT_EQ(describe(target), all) << "the base part alone, so all files count as referenced";
}

} // namespace

#include "Server/Orvane/Payloads/FilesData.h"

#include "Base/QxBaseCore10/Strings.h"
#include "Tests/Support/Json.h"

#include <gtest/gtest.h>
#include <type_traits>

namespace {

using Orvane::Payloads::ContainerType;
using Orvane::Payloads::FilesData;

static_assert(!std::is_default_constructible_v<FilesData>);
static_assert(!std::is_convertible_v<Qx::JSONNode, FilesData>);
static_assert(!std::is_polymorphic_v<FilesData>);
static_assert(std::is_nothrow_move_constructible_v<FilesData>);

// "id type name parentId parentType subTypes"; "-" for no sub type at all.
std::string describe(const FilesData& file) {
    const char* const types[] = {"OTHER", "FOLDER", "PROJECT"};
    return file.getId() + ' ' + file.getType() + ' ' + Qx::ToHString(file.getName()) + ' ' + file.getParentId() + ' ' +
           types[static_cast<int>(file.getParentType())] + ' ' + file.getSubTypes().value_or("-");
}

TEST(FilesData, ReadsItsJSON) {
    const std::pair<const char*, const char*> cases[] = {
        {R"("id":"f","type":"files")", "f files   OTHER -"},
        {R"("id":"f","type":"Files","name":"A","parent":{"type":"folders","id":"p"},
            "attributes":{"subTypes":{"value":"s"}})",
         "f Files   OTHER -"},
        {R"("type":"files","name":"\u6b6f","parent":{"type":"folders","id":"p"})", " files \xE6\xAD\xAF p FOLDER -"},
        {R"("type":"files","parent":{"type":"FOLDER","id":"p"})", " files  p FOLDER -"},
        {R"("type":"files","parent":{"type":"Folder","id":"p"})", " files  p OTHER -"},
        {R"("type":"files","parent":{"id":"p"},"project":{"id":"q"})", " files  p OTHER -"},
        {R"("type":"files","parent":{"type":"projects","id":"p"},"project":{"id":"q"})", " files  q PROJECT -"},
        {R"("type":"files","parent":{"type":"PROJECT","id":"p"},"project":{"id":"q"})", " files  q PROJECT -"},
        {R"("type":"files","parent":{"type":"projects","id":"p"},"project":null)", " files   PROJECT -"},
        {R"("type":"files","parent":{"type":"projects","id":"p"})", " files   PROJECT -"},
        {R"("type":"files","parent":null,"project":{"id":"q"},"attributes":{"subTypes":{"value":"s"}})",
         " files   OTHER s"},
        {R"("type":"files","parent":"p","attributes":{"subTypes":{}})", " files   OTHER -"},
        {R"("type":"files","attributes":null)", " files   OTHER -"},
        {R"("type":"files","attributes":{"subTypes":{"value":null}})", " files   OTHER "},
    };
    for (const auto& [members, expected] : cases)
        EXPECT_EQ(describe(FilesData(json("{" + std::string(members) + "}"))), expected) << members;
    EXPECT_EQ(FilesData::dataType(), "files");
}

TEST(FilesData, OnlyAConfigurationDesignTakesTheConfiguredProjectForItsParent) {
    const std::pair<const char*, const char*> cases[] = {
        {R"("subTypes":{"value":"Configuration"},"configuredDesignProjectId":{"value":"c"})", "c"},
        {R"("subTypes":{"value":"Configuration"},"configuredDesignProjectId":{"value":null})", ""},
        {R"("subTypes":{"value":"Configuration"},"configuredDesignProjectId":{})", "p"},
        {R"("subTypes":{"value":"Configuration2"},"configuredDesignProjectId":{"value":"c"})", "p"},
        {R"("subTypes":{"value":"configuration"},"configuredDesignProjectId":{"value":"c"})", "p"},
        {R"("configuredDesignProjectId":{"value":"c"})", "p"},
    };
    for (const auto& [attributes, parentId] : cases) {
        FilesData file(json(R"({"type":"files","parent":{"type":"folders","id":"p"},"attributes":{)" +
                            std::string(attributes) + "}}"));
        EXPECT_EQ(file.getParentId(), parentId) << attributes;
        EXPECT_EQ(file.getParentType(), ContainerType::FOLDER) << attributes;
        file.setParentType(ContainerType::PROJECT);
        EXPECT_EQ(file.getParentType(), ContainerType::PROJECT);
        EXPECT_EQ(file.getParentId(), parentId) << "setting the type leaves the id";
    }
}

} // namespace

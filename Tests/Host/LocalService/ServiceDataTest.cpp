#include "Host/LocalService/ServiceData.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>
#include <unistd.h>

namespace {

using OrvaneHost::ServiceData;
using Address = ServiceData::Address;

TEST(ServiceData, ReadsAFolderOfJSONFiles) {
    const std::filesystem::path folder =
        std::filesystem::path(testing::TempDir()) / ("orvane-data-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder / "folders");
    EXPECT_THROW(ServiceData::fromFolder(folder), std::runtime_error) << "nothing to serve";
    std::ofstream(folder / "folders/a.json") << R"({"data":{"id":"a"}})";
    std::ofstream(folder / "folders/b.json") << R"({"data":{"id":"b"},"errors":[{"status":"403"}]})";
    std::ofstream(folder / "folders/notes.txt") << "not for the service";
    const ServiceData data = ServiceData::fromFolder(folder);
    EXPECT_EQ(data.find(Address::FOLDER_CONTENTS, "a").body, R"({"data":{"id":"a"}})");
    EXPECT_EQ(data.find(Address::FOLDER_CONTENTS, "b").status, 403);
    EXPECT_EQ(data.find(Address::FULL_ASSEMBLY, "a").status, 404);
    std::ofstream(folder / "folders/c.json") << "{";
    EXPECT_THROW(ServiceData::fromFolder(folder), std::runtime_error);
    std::filesystem::remove_all(folder);
}

} // namespace

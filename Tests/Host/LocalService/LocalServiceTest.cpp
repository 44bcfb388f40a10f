#include "Host/LocalService/LocalService.h"

#include "Tests/Support/Json.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <httplib.h>
#include <stdexcept>
#include <unistd.h>

namespace {

using OrvaneHost::LocalService;
using OrvaneHost::ServiceData;
using Address = ServiceData::Address;

class LocalServiceTest : public testing::Test {
protected:
    // The status, and that the body is JSON.
    int get(const std::string& path) { return check(client.Get(path, bearer)); }
    int post(const std::string& path) { return check(client.Post(path, bearer, "", "application/json")); }

    static int check(const httplib::Result& result) {
        if (!result)
            return -1;
        EXPECT_NE(json(result->body).toText(), "null") << result->body;
        return result->status;
    }

    const LocalService service{ServiceData::sample(), "right", 0};
    httplib::Client client{"127.0.0.1", service.port()};
    httplib::Headers bearer{{"Authorization", "Bearer right"}};
};

TEST_F(LocalServiceTest, AnswersItsThreeAddresses) {
    EXPECT_EQ(get("/orvanedm/folders/urn:vrnk.dorlqa:fs.folder:gearbox/content?a=b"), 200);
    EXPECT_EQ(get("/orvanedm/folders/urn:vrnk.dorlqa:fs.folder:seals/content"), 403);
    EXPECT_EQ(get("/orvanedm/folders/unknown/content"), 404);
    const std::string version = "/versions/urn%3Avrnk.dorlqa%3Afs.file%3Agearbox-asm%3Fversion%3D7/fullassembly";
    EXPECT_EQ(get("/orvanedm/v3" + version), 200);
    EXPECT_EQ(post("/orvanedm" + version + "/access?algorithm=LATEST"), 200);
    EXPECT_EQ(get("/orvanedm" + version + "/access"), 404) << "access is asked for by POST";
    EXPECT_EQ(get("/elsewhere"), 404);
}

TEST_F(LocalServiceTest, AsksForTheRightToken) {
    for (const char* authorization : {"", "Bearer wrong", "right", "Bearer right2"}) {
        bearer = {{"Authorization", authorization}};
        EXPECT_EQ(get("/orvanedm/folders/urn:vrnk.dorlqa:fs.folder:gearbox/content"), 401) << authorization;
    }
}

TEST_F(LocalServiceTest, TakesOnlyAFreePort) {
    EXPECT_THROW(LocalService(ServiceData::sample(), "t", service.port()), std::runtime_error);
}

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

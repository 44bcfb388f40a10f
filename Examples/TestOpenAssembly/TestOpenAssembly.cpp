// Tests how an application opens a design, without a network.

#include "Server/Orvane/Orvanedm.h"
#include "Server/Orvane/Payloads/FullAssemblyData.h"
#include "Testing/PreparedHTTPClient.h"
#include "Testing/RecordingHTTPClient.h"
#include "Testing/ScopedState.h"

#include <gtest/gtest.h>

namespace {

using namespace Orvane::Testing;
using Orvane::Payloads::FullAssemblyData;

// Represents the application. `shown` is what it displays.
class Application {
public:
    explicit Application(std::shared_ptr<Qx::IHTTPClient> client) : orvanedm_(std::move(client), "main") {}

    void open(const std::string& version) {
        shown = "opening";
        orvanedm_.getFullAssemblyStatus(
            version,
            [this, version](bool success, const std::shared_ptr<FullAssemblyData>& assembly) {
                if (!success)
                    shown = "can't open it";
                else if (assembly->getId() != version)
                    shown = "not a design";
                else
                    shown = std::to_string(assembly->getDirectReferencedFiles().size()) + " files";
            },
            "ACTUAL", L"open design");
    }

    std::string shown;

private:
    Qx::Orvanedm orvanedm_;
};

const std::string gearbox = "urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7";

class OpenAssemblyTest : public testing::Test {
protected:
    // Sets the service's answer for the gearbox.
    void prepare(Qx::HTTPResponse response) {
        PreparedAnswers answers;
        answers.add({Endpoint::Kind::FULL_ASSEMBLY, gearbox}, std::move(response));
        client->setAnswers(std::move(answers));
    }

    const ScopedState service = scopedOption("main", L"orvaneV3ServiceUrl", L"https://orvane.example/v3");
    const CapturedEvents events;
    const std::shared_ptr<PreparedHTTPClient> client = std::make_shared<PreparedHTTPClient>(PreparedAnswers::sample());
    Application application{client};
};

TEST_F(OpenAssemblyTest, ShowsWhatTheDesignRefersTo) {
    application.open(gearbox);
    EXPECT_EQ(application.shown, "13 files");
    EXPECT_TRUE(events.waitFor(1)) << "one usage event";
}

TEST_F(OpenAssemblyTest, ReportsThatAccessIsDenied) {
    prepare(Qx::HTTPResponse(403, ""));
    application.open(gearbox);
    EXPECT_EQ(application.shown, "can't open it");
    EXPECT_TRUE(events.all().empty());
}

TEST_F(OpenAssemblyTest, RejectsUnexpectedAnswers) {
    for (const char* body : {"<html>Sign in</html>", "", "{\"data\":"}) {
        prepare(Qx::HTTPResponse(200, body));
        application.open(gearbox);
        EXPECT_EQ(application.shown, "can't open it") << body;
    }
    prepare(Qx::HTTPResponse(200, "{}"));
    application.open(gearbox);
    EXPECT_EQ(application.shown, "not a design");
}

TEST_F(OpenAssemblyTest, ReplaysARecordedAnswer) {
    const std::string folder = testing::TempDir() + "recorded";
    Application(std::make_shared<RecordingHTTPClient>(client, folder)).open(gearbox);
    client->setAnswers(PreparedAnswers::fromFolder(folder));
    application.open(gearbox);
    EXPECT_EQ(application.shown, "13 files");
}

TEST_F(OpenAssemblyTest, WaitsForTheAnswer) {
    client->hold();
    application.open(gearbox);
    EXPECT_EQ(application.shown, "opening");
    client->answerNext();
    EXPECT_EQ(application.shown, "13 files");
}

} // namespace

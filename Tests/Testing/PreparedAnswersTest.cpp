// Tests of the testing library: prepared answers, recorded ones, and scoped changes to the state of
// the process.

#include "Base/QxBaseCore10/ApplicationOptions.h"
#include "Base/QxBaseCore10/JSONNode.h"
#include "Server/Orvane/Orvanedm.h"
#include "Testing/LocalService.h"
#include "Testing/PreparedHTTPClient.h"
#include "Testing/RecordingHTTPClient.h"
#include "Testing/ScopedState.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <thread>
#include <unistd.h>

namespace {

using namespace Orvane::Testing;
using Kind = Endpoint::Kind;
using Method = Qx::HTTPRequest::Method;
using FailureKind = Qx::HTTPResponse::FailureKind;
using Qx::HTTPResponse;

// The response, once there is one.
using Kept = std::shared_ptr<std::optional<HTTPResponse>>;

Kept send(Qx::IHTTPClient& client, const std::string& url, Method method = Method::GET) {
    const auto kept = std::make_shared<std::optional<HTTPResponse>>();
    Qx::HTTPRequest request(BOOST_CURRENT_LOCATION);
    request.setURL(url);
    request.setMethod(method);
    request.setHeader("Authorization", "Bearer s3cret");
    request.setCallback([kept](const HTTPResponse& given) { *kept = given; });
    client.queueRequest(request);
    return kept;
}

TEST(Endpoint, IsRecognisedByMethodAndURL) {
    using Found = std::optional<Endpoint>;
    EXPECT_EQ(Endpoint::of(Method::GET, "https://h/x/folders/urn:f/content?a=b"),
              (Found{{Kind::FOLDER_CONTENTS, "urn:f"}}));
    EXPECT_EQ(Endpoint::of(Method::GET, "/v3/versions/a%3Fv%3D1%/fullassembly?x=/fullassembly"),
              (Found{{Kind::FULL_ASSEMBLY, "a?v=1%"}}));
    EXPECT_EQ(Endpoint::of(Method::POST, "/versions/v/fullassembly/access"),
              (Found{{Kind::FULL_ASSEMBLY_ACCESS, "v"}}));
    for (const char* other :
         {"", "/folders/", "/content/folders/", "/folders/f/content/more", "/versions/v/fullassembly/access"})
        EXPECT_EQ(Endpoint::of(Method::GET, other), std::nullopt) << other;
}

TEST(PreparedHTTPClient, AnswersAtOnceOrWhenReleased) {
    PreparedAnswers answers;
    answers.add({Kind::FOLDER_CONTENTS, "f"}, HTTPResponse(200, "<html>", {{"X-Odd", "1"}}));
    answers.add(Method::POST, "/other", HTTPResponse::transportFailure(FailureKind::TIMEOUT, "late"));
    PreparedHTTPClient client(answers);
    EXPECT_EQ(send(client, "https://any/folders/f/content")->value().getBody(), "<html>");
    EXPECT_EQ(send(client, "https://any/other", Method::POST)->value().getFailureKind(), FailureKind::TIMEOUT);
    const Kept unexpected = send(client, "https://any/other");
    EXPECT_EQ(unexpected->value().getReason(),
              "unexpected request GET https://any/other; expected: the contents of folder f, POST /other");
    client.hold();
    const Kept first = send(client, "/folders/f/content");
    const Kept second = send(client, "/folders/f/content");
    const Kept third = send(client, "/folders/f/content");
    EXPECT_EQ(client.waiting(), 3U);
    client.answer(1);
    EXPECT_TRUE(!*first && *second && !*third);
    client.answer(1, HTTPResponse(418, ""));
    EXPECT_EQ(third->value().getStatus(), 418);
    client.cancelAll();
    EXPECT_EQ(first->value().getFailureKind(), FailureKind::CANCELLED);
    EXPECT_THROW(client.answerNext(), std::out_of_range);
    EXPECT_EQ(client.requests().size(), 6U);
}

TEST(PreparedHTTPClient, CompletesABatchWhateverItsCallbacksDo) {
    auto client = std::make_unique<PreparedHTTPClient>(HTTPResponse(200, ""));
    Qx::HTTPRequest request(BOOST_CURRENT_LOCATION);
    int completions = 0;
    request.setCallback([&](const HTTPResponse&) {
        ++completions;
        client.reset();
        throw std::runtime_error("no");
    });
    std::vector<Qx::HTTPRequest> requests(3, request);
    const auto countAll = [&](const std::vector<HTTPResponse>& responses) {
        completions += 10 * static_cast<int>(responses.size());
    };
    EXPECT_THROW(client->whenAllRequests(requests, countAll, Qx::HTTPRequest::ExecutionType::CALLING_THREAD),
                 std::runtime_error);
    EXPECT_EQ(completions, 33);
}

class RecordingTest : public testing::Test {
protected:
    RecordingTest() { std::filesystem::remove_all(folder); }
    ~RecordingTest() override { std::filesystem::remove_all(folder); }

    // Returns everything that was recorded.
    std::string recorded() const {
        std::ostringstream all;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            all << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        return all.str();
    }

    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / u8"recording \u9F7F\u8F6E" / std::to_string(getpid());
};

TEST_F(RecordingTest, RecordsEachExchangeUnchangedExceptSecretsAndReplaysIt) {
    const std::string odd("\xFF\0 cut {", 8);
    const auto inner = std::make_shared<PreparedHTTPClient>();
    RecordingHTTPClient client(inner, folder);
    inner->setAnswers([&] {
        PreparedAnswers answers;
        answers.add({Kind::FULL_ASSEMBLY, "v"},
                    HTTPResponse(203, odd, {{"Set-Cookie", "s3cret"}, {"X-Token", "s3cret"}, {"A", "b"}}));
        answers.add(Method::GET, "https://h/x?y", HTTPResponse::transportFailure(FailureKind::TLS, "no"));
        return answers;
    }());
    send(client, "https://h/versions/v/fullassembly");
    send(client, "https://h/x?y");
    EXPECT_EQ(client.problem(), "");
    EXPECT_EQ(recorded().find("s3cret"), std::string::npos);
    const PreparedAnswers replayed = PreparedAnswers::fromFolder(folder);
    const auto answer = replayed.find(Method::GET, "http://elsewhere/versions/v/fullassembly");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->getStatus(), 203);
    EXPECT_EQ(answer->getBody(), odd);
    EXPECT_EQ(answer->getHeaders(), (HTTPResponse::Headers{{"A", "b"}}));
    EXPECT_EQ(replayed.find(Method::GET, "https://h/x?y")->getFailureKind(), FailureKind::TLS);
}

TEST_F(RecordingTest, MakesUpNamesOfTheSameKind) {
    const std::string deep = std::string(1000, '[') + "\"Acme\"" + std::string(1000, ']');
    const auto inner = std::make_shared<PreparedHTTPClient>(
        HTTPResponse(200, R"({"data":{"id":"urn:vrnk.dorlqa:fs.file:acme?version=3",
        "type":"files","status":"Acme","name":"Acme.Jo rotor.prt","owner":{"Acme":"Jo","type":"files","value":"ACME"}},"versions":[{"id":77},{"id":"acme.1"},
        {"parent":"77"},"acme.1",{"name":"","role":"EDITOR","restrictedProjects":77777}],"files":[],"files":["urn:acme:a?b=jo"],
        "title":)" + deep + "}"));
    RecordingHTTPClient client(inner, folder, {.anonymize = true});
    send(client, "https://acme.example/versions/urn%3Avrnk.dorlqa%3Afs.file%3Aacme%3Fversion%3D3/fullassembly");
    const std::string all = recorded();
    for (const char* part : {"cme", "CME", "Jo", "jo"})
        EXPECT_EQ(all.find(part), std::string::npos) << all;
    const auto answer = PreparedAnswers::fromFolder(folder).find(
        Method::GET, "/versions/urn:vrnk.dorlqa:fs.file:1%3Fversion%3D3/fullassembly");
    ASSERT_TRUE(answer) << all << client.problem();
    const std::string id = "9000000000000007";
    EXPECT_EQ(answer->getBody().substr(0, answer->getBody().find("\"title\"")),
              R"({"data":{"id":"urn:vrnk.dorlqa:fs.file:1?version=3","type":"files","status":"name 2",)"
              R"("name":"name 3.prt","key 4":{"key 2":"name 5","type":"files","value":"name 6"}},"versions":[{"id":)" +
                  id + R"(},{"id":"id-8"},{"parent":")" + id +
                  R"("},"id-8",{"name":"","role":"EDITOR","restrictedProjects":77777}],"files":[],)"
                  R"("files":["urn:made-up:9"],)");
}

TEST_F(RecordingTest, KeepsTheExchangesOfSeveralRecordersInOrder) {
    for (const char* body : {"first", "second"}) {
        RecordingHTTPClient client(std::make_shared<PreparedHTTPClient>(HTTPResponse(200, body)), folder);
        RecordingHTTPClient other(std::make_shared<PreparedHTTPClient>(HTTPResponse(200, "other")), folder);
        send(client, "https://user:s3cret@h/a?x=\xFF&token=s3cret");
        send(client, "https://user:pa?s3cret/@h/s?t%6Fken=s3cret#code=s3cret");
        send(other, "https://h/b");
        std::filesystem::remove(folder / "000001.exchange");
        std::filesystem::remove(folder / "000001.body");
    }
    const PreparedAnswers replayed = PreparedAnswers::fromFolder(folder);
    EXPECT_EQ(replayed.find(Method::GET, "/a?x=\xFF&token=***")->getBody(), "second");
    EXPECT_EQ(replayed.find(Method::GET, "https://h/b")->getBody(), "other");
    EXPECT_EQ(recorded().find("s3cret"), std::string::npos);
}

TEST_F(RecordingTest, PassesRequestsOnEvenIfItCannotWrite) {
    RecordingHTTPClient client(std::make_shared<PreparedHTTPClient>(HTTPResponse(200, "{}")), "/dev/null/nothing");
    EXPECT_EQ(send(client, "https://h/")->value().getStatus(), 200);
    EXPECT_NE(client.problem(), "");
}

TEST(ScopedState, RestoresThePreviousStateAndWaitsForEvents) {
    const auto options = Qx::ApplicationOptions::get("scoped");
    options->set(L"orvaneV3ServiceUrl", L"before");
    {
        const ScopedState url = scopedOption("scoped", L"orvaneV3ServiceUrl", L"https://v3");
        const CapturedEvents events;
        const auto http = std::make_shared<PreparedHTTPClient>(PreparedAnswers::sample());
        http->hold();
        Qx::Orvanedm orvanedm(http, "scoped");
        orvanedm.getFullAssemblyStatus(
            "urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7", [](bool, const auto&) {}, "ACTUAL", L"");
        std::thread answering([&] { http->answerAll(); });
        EXPECT_TRUE(events.waitFor(1));
        answering.join();
        EXPECT_FALSE(events.waitFor(2, std::chrono::milliseconds(1)));
    }
    std::wstring value;
    EXPECT_TRUE(options->tryGet(L"orvaneV3ServiceUrl", value));
    EXPECT_EQ(value, L"before");
    EXPECT_FALSE(Qx::Analytics::setEventSink({}));
}

} // namespace

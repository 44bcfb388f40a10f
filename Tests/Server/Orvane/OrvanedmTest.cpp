#include "Server/Orvane/Orvanedm.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Uri.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"
#include "Tests/Support/Cases.h"
#include "Tests/Support/FakeHTTPClient.h"
#include "Tests/Support/ScopedState.h"

#include <gtest/gtest.h>
#include <optional>
#include <pthread.h>
#include <set>
#include <stdexcept>

namespace {

using Orvane::FolderContentLink;
using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;
using ExecutionType = Qx::HTTPRequest::ExecutionType;

static_assert(!std::is_default_constructible_v<Qx::Orvanedm>);
static_assert(std::has_virtual_destructor_v<Qx::Orvanedm>);

// All that a request says, in the order of the common form; the callback and the location aside.
std::string describe(const Qx::HTTPRequest& request) {
    std::string text = request.getMethod() == Qx::HTTPRequest::Method::POST ? "POST " : "GET ";
    text += request.getURL();
    for (const auto& [name, value] : request.getHeaders())
        text.append(" | ").append(name).append(": ").append(value);
    text += request.getAuthType() == Qx::HTTPRequest::AuthType::BEARER ? " | bearer | " : " | ";
    text += request.executionType == ExecutionType::CLIENT_THREAD ? "client thread | " : "calling thread | ";
    return text + request.getThreadName();
}

const std::string common = " | Content-Type: application/json | Accept: application/json | bearer | ";

class OrvanedmTest : public testing::Test {
protected:
    const Qx::HTTPRequest& lastRequest() const { return http->queued.back(); }

    const ScopedState service = scopedOption("set", L"orvaneServiceUrl", L"https://first/orvanedm");
    const ScopedState v3Service = scopedOption("set", L"orvaneV3ServiceUrl", L"https://third");
    const std::shared_ptr<FakeHTTPClient> http = std::make_shared<FakeHTTPClient>();
    Qx::Orvanedm orvanedm{http, "set"};
    const FolderContentLink link = FolderContentLink::fromUrn("an.urn", "set");
    std::optional<bool> success;
    std::string contents;
    std::shared_ptr<FullAssemblyData> document;
    ScopedEvents events;
    Qx::Orvanedm::FolderContentsCallback keepContents = [this](bool succeeded, const Qx::JSONNode& node) {
        success = succeeded;
        contents = node.toText();
    };
    Qx::Orvanedm::FullAssemblyStatusCallback keepDocument = [this](bool succeeded, const auto& data) {
        success = succeeded;
        document = data;
        EXPECT_TRUE(events.tracked.empty()) << "the caller has the document first";
    };
    Qx::Orvanedm::FullAssemblyAccessCallback keepAccess = [this](bool succeeded, const FullAssemblyData& data) {
        success = succeeded;
        contents = data.getId();
        EXPECT_EQ(dynamic_cast<const FullAssemblyDataV3*>(&data), nullptr);
    };
};

TEST_F(OrvanedmTest, BaseUrisAreReadAnewAndEmptyWhereUnset) {
    EXPECT_EQ(Qx::Orvanedm::baseOrvanedmUri() + Qx::Orvanedm::baseOrvanedmUri_V3(), "");
    const ScopedState current = scopedCurrentOptions("set");
    EXPECT_EQ(Qx::Orvanedm::baseOrvanedmUri(), "https://first/orvanedm");
    EXPECT_EQ(Qx::Orvanedm::baseOrvanedmUri_V3(), "https://third");
    EXPECT_EQ(Qx::Orvanedm::baseOrvanedmUri("none") + Qx::Orvanedm::baseOrvanedmUri_V3("none"), "");
}

TEST_F(OrvanedmTest, RequestsHaveTheirForms) {
    const std::string urn = "abc?version=2";
    const std::string version = "/versions/" + Qx::Uri::UriEncode(urn) + "/fullassembly";
    const std::string statusEnd = common + "calling thread | Orvanedm::getFullAssemblyStatus_V3";

    orvanedm.getFolderContents(link, {{"include", "stuff"}, {"something", "else"}}, keepContents);
    EXPECT_EQ(describe(lastRequest()),
              "GET https://first/orvanedm/folders/an.urn/content?include=stuff&something=else" + common +
                  "calling thread | Orvanedm::getFolderContents");
    orvanedm.getFullAssemblyStatus_V3(urn, keepDocument, "ACTUAL", L"");
    EXPECT_EQ(describe(lastRequest()),
              "GET https://third" + version + "?algorithm=ACTUAL&include=folders,allowed-actions" + statusEnd);
    const ScopedState indirect = scopedIndirectXRefs();
    orvanedm.getFullAssemblyStatus(urn, keepDocument, "A&B=C", L"");
    EXPECT_EQ(describe(lastRequest()), "GET https://third" + version +
                                           "?algorithm=A&B=C&include=folders,allowed-actions,indirectXRefs" +
                                           statusEnd);
    Qx::Orvanedm(http, "none").getFullAssemblyStatus("", keepDocument, "", L"");
    EXPECT_EQ(lastRequest().getURL(),
              "/versions//fullassembly?algorithm=&include=folders,allowed-actions,indirectXRefs");
    orvanedm.setAsync(true);
    orvanedm.requestFullAssemblyAccess(urn, keepAccess, "LATEST");
    EXPECT_EQ(describe(lastRequest()), "POST https://first/orvanedm" + version + "/access?algorithm=LATEST" + common +
                                           "client thread | Orvanedm::requestFullAssemblyAccess");
    EXPECT_FALSE(success.has_value()) << "nothing is told before the answer";
}

TEST_F(OrvanedmTest, RequestsSayWhereTheyWereFormed) {
    orvanedm.getFolderContents(link, {}, keepContents);
    orvanedm.getFullAssemblyStatus("v", keepDocument, "ACTUAL", L"");
    orvanedm.requestFullAssemblyAccess("v", keepAccess, "LATEST");
    std::set<std::uint_least32_t> lines;
    for (const Qx::HTTPRequest& request : http->queued) {
        const boost::source_location& location = request.getLocation();
        EXPECT_TRUE(std::string(location.file_name()).ends_with("Orvanedm.cpp")) << location.file_name();
        EXPECT_NE(std::string(location.function_name()).find("Qx::Orvanedm::"), std::string::npos) << location;
        EXPECT_GT(location.column(), 0U);
        lines.insert(location.line());
    }
    EXPECT_EQ(lines.size(), 3U);
}

TEST_F(OrvanedmTest, FolderAnswersReachTheCallback) {
    const std::tuple<int, const char*, bool, const char*> cases[] = {
        {200, R"({ "results": "yes" })", true, R"({"results":"yes"})"},
        {201, "{}", true, "{}"},
        {299, "[]", true, "[]"},
        {304, "[]", false, "{}"},
        {200, "no JSON", false, "{}"},
        {200, "", false, "{}"},
        {403, R"({"error":1})", false, "{}"},
        {0, "", false, "{}"}};
    for (const auto& [status, body, expected, text] : cases) {
        orvanedm.getFolderContents(link, {}, keepContents);
        http->answer(status, body);
        EXPECT_EQ(success, expected) << body;
        EXPECT_EQ(contents, text) << body;
    }
}

TEST_F(OrvanedmTest, AsyncCountsWhenARequestIsFormedAndIsEachCopysOwn) {
    const auto form = [this](Qx::Orvanedm& client) {
        Qx::HTTPRequest request(BOOST_CURRENT_LOCATION);
        client.buildOrvaneFolderContentsRequest(link, {}, keepContents, request);
        return request;
    };
    const Qx::HTTPRequest early = form(orvanedm);
    EXPECT_TRUE(http->queued.empty()) << "forming sends nothing";
    Qx::Orvanedm copy = orvanedm;
    copy.setAsync(true);
    EXPECT_EQ(form(copy).executionType, ExecutionType::CLIENT_THREAD);
    EXPECT_EQ(form(orvanedm).executionType, ExecutionType::CALLING_THREAD);
    copy.getFolderContents(early);
    EXPECT_EQ(lastRequest().executionType, ExecutionType::CALLING_THREAD);
    Qx::Orvanedm assigned(nullptr, "other");
    assigned = copy;
    copy.setAsync(false);
    EXPECT_EQ(form(copy).executionType, ExecutionType::CALLING_THREAD);
    EXPECT_EQ(form(assigned).executionType, ExecutionType::CLIENT_THREAD);
    assigned.requestFullAssemblyAccess("v", keepAccess, "LATEST");
    EXPECT_EQ(lastRequest().getURL(), "https://first/orvanedm/versions/v/fullassembly/access?algorithm=LATEST");

    std::size_t answered = 0;
    orvanedm.getFolderContents({early, early}, [&](std::vector<Qx::HTTPResponse> r) { answered = r.size(); });
    EXPECT_EQ(http->batch.size(), 2U);
    EXPECT_EQ(http->batchExecutionType, ExecutionType::CLIENT_THREAD);
    http->batchCallback({Qx::HTTPResponse(), Qx::HTTPResponse()});
    EXPECT_EQ(answered, 2U);
}

TEST_F(OrvanedmTest, CallbacksOutliveTheClient) {
    Qx::Orvanedm(http, "set").getFolderContents(link, {}, keepContents);
    http->answer(200, "{}");
    EXPECT_EQ(success, true);
}

TEST_F(OrvanedmTest, StatusAnswerGivesTheDocumentThenTracksTheEvent) {
    orvanedm.getFullAssemblyStatus("v", keepDocument, "ACTUAL", std::wstring(L"my \u6B6F flow"));
    http->answer(200, R"({"data":{"id":"v"}})");
    EXPECT_EQ(success, true);
    ASSERT_TRUE(std::dynamic_pointer_cast<FullAssemblyDataV3>(document));
    EXPECT_EQ(document->getId(), "v");
    ASSERT_EQ(events.tracked.size(), 1U);
    EXPECT_EQ(events.tracked.front().properties.at(L"Workflow"), L"my \u6B6F flow");
    EXPECT_EQ(events.tracked.front().properties.at(L"Version"), L"V3");
}

TEST_F(OrvanedmTest, FailedStatusGivesNoDocumentAndNoEvent) {
    for (const auto& [status, body] : {std::pair(500, "{}"), std::pair(200, "{")}) {
        document = std::make_shared<FullAssemblyData>();
        orvanedm.getFullAssemblyStatus("v", keepDocument, "ACTUAL", L"");
        http->answer(status, body);
        EXPECT_EQ(success, false);
        EXPECT_EQ(document, nullptr);
    }
    EXPECT_TRUE(events.tracked.empty());
}

TEST_F(OrvanedmTest, ACallbackThatThrowsKeepsTheEventFromGoingOutAndLeavesTheClientUsable) {
    const auto refuse = [](bool, const auto&) { throw std::runtime_error("no"); };
    orvanedm.getFullAssemblyStatus("v", refuse, "ACTUAL", L"");
    EXPECT_THROW(http->answer(200, "{}"), std::runtime_error);
    EXPECT_TRUE(events.tracked.empty());
    orvanedm.getFullAssemblyStatus("v", keepDocument, "ACTUAL", L"");
    http->answer(200, "{}");
    EXPECT_EQ(success, true);
    EXPECT_EQ(events.tracked.size(), 1U);
}

TEST_F(OrvanedmTest, AccessAnswerGivesAFirstGenerationDocumentAndNoEvent) {
    for (const int status : {200, 403}) {
        orvanedm.requestFullAssemblyAccess("v", keepAccess, "LATEST");
        http->answer(status, R"({"data":{"id":"v"}})");
        EXPECT_EQ(success, status == 200);
        EXPECT_EQ(contents, status == 200 ? "v" : "");
    }
    EXPECT_TRUE(events.tracked.empty());
}

TEST_F(OrvanedmTest, EveryProperPrefixOfABodyFails) {
    const std::string body = wholeAssembly();
    for (std::size_t size = 0; size <= body.size(); ++size) {
        orvanedm.getFullAssemblyStatus("v", keepDocument, "ACTUAL", L"");
        http->answer(200, body.substr(0, size));
        ASSERT_EQ(success, size == body.size()) << size;
    }
}

TEST_F(OrvanedmTest, NestingTakesNoStack) {
    constexpr std::size_t million = 1'000'000;
    pthread_attr_t small;
    pthread_attr_init(&small);
    pthread_attr_setstacksize(&small, std::size_t{256} << 10);
    for (const std::string& body : {std::string(million, '[') + std::string(million, ']'), std::string(million, '['),
                                    R"({"data":)" + std::string(million, '[') + std::string(million, ']') + "}"}) {
        orvanedm.getFullAssemblyStatus("v", keepDocument, "ACTUAL", L"");
        std::function<void()> answer = [&] { http->answer(200, body); };
        const auto run = [](void* function) -> void* {
            return (*static_cast<std::function<void()>*>(function))(), nullptr;
        };
        pthread_t thread{};
        success.reset();
        ASSERT_EQ(pthread_create(&thread, &small, run, &answer), 0);
        pthread_join(thread, nullptr);
        EXPECT_EQ(success, false);
    }
    pthread_attr_destroy(&small);
}

} // namespace

#include "Server/Orvane/Orvanedm.h"

#include "Base/QxBaseCore10/ApplicationOptions.h"
#include "Base/QxBaseCore10/JSONNode.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"
#include "Testing/PreparedHTTPClient.h"
#include "Testing/ScopedState.h"
#include "Tests/Support/Cases.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <optional>
#include <pthread.h>
#include <set>
#include <stdexcept>

namespace {

using namespace Orvane::Testing;
using Orvane::FolderContentLink;
using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;
using Json = nlohmann::json;
using ExecutionType = Qx::HTTPRequest::ExecutionType;

static_assert(!std::is_default_constructible_v<Qx::Orvanedm>);
static_assert(std::has_virtual_destructor_v<Qx::Orvanedm>);

// Returns everything in a request except its callback and location, in one line.
std::string describe(const Qx::HTTPRequest& request) {
    std::string text = request.getMethod() == Qx::HTTPRequest::Method::POST ? "POST " : "GET ";
    text += request.getURL();
    for (const auto& [name, value] : request.getHeaders())
        text.append(" | ").append(name).append(": ").append(value);
    text += request.getAuthType() == Qx::HTTPRequest::AuthType::BEARER ? " | bearer | " : " | ";
    text += request.executionType == ExecutionType::CLIENT_THREAD ? "client thread | " : "calling thread | ";
    return text + request.getThreadName();
}

class OrvanedmTest : public testing::Test {
protected:
    OrvanedmTest() { http->hold(); }

    // Answers the last request.
    void answer(int status, std::string body) {
        http->answer(http->waiting() - 1, Qx::HTTPResponse(status, std::move(body)));
    }

    // Sends the request of a case.
    void send(Qx::Orvanedm& client, const Json& tested) {
        const std::string operation = tested.value("operation", "status");
        const std::string urn = tested.value("urn", "v");
        const std::string algorithm = tested.value("algorithm", "ACTUAL");
        if (operation == "folder")
            client.getFolderContents(FolderContentLink::fromUrn(urn, "set"),
                                     tested.value("query", Qx::Orvanedm::QueryVariables()), keepContents);
        else if (operation == "access")
            client.requestFullAssemblyAccess(urn, keepAccess, algorithm);
        else if (operation == "status")
            client.getFullAssemblyStatus_V3(urn, keepDocument, algorithm, L"my \u6B6F flow");
        else
            client.getFullAssemblyStatus(urn, keepDocument, algorithm, L"");
    }

    const ScopedState service = scopedOption("set", L"orvaneServiceUrl", L"https://first/orvanedm");
    const ScopedState v3Service = scopedOption("set", L"orvaneV3ServiceUrl", L"https://third");
    const std::shared_ptr<PreparedHTTPClient> http = std::make_shared<PreparedHTTPClient>();
    Qx::Orvanedm orvanedm{http, "set"};
    const FolderContentLink link = FolderContentLink::fromUrn("an.urn", "set");
    CapturedEvents events;
    std::optional<bool> success;
    std::string given; // What the callback received: contents, or a document's API version and id.
    Qx::Orvanedm::FolderContentsCallback keepContents = [this](bool succeeded, const Qx::JSONNode& node) {
        success = succeeded;
        given = node.toText();
    };
    Qx::Orvanedm::FullAssemblyStatusCallback keepDocument = [this](bool succeeded, const auto& data) {
        success = succeeded;
        given =
            data ? (std::dynamic_pointer_cast<FullAssemblyDataV3>(data) ? "V3 " : "V2 ") + data->getId() : "nothing";
        EXPECT_TRUE(events.all().empty()) << "the callback runs before the event is tracked";
    };
    Qx::Orvanedm::FullAssemblyAccessCallback keepAccess = [this](bool succeeded, const FullAssemblyData& data) {
        success = succeeded;
        given = (dynamic_cast<const FullAssemblyDataV3*>(&data) ? "V3 " : "V2 ") + data.getId();
    };
};

TEST_F(OrvanedmTest, SendsAndAnswersAsTheCasesSay) {
    const std::string common = " | Content-Type: application/json | Accept: application/json | bearer | ";
    for (const Json& tested : casesOf("requests.json")) {
        SCOPED_TRACE(tested.at("shows"));
        const ScopedState indirect = tested.contains("indirect") ? scopedIndirectXRefProjectDetails() : ScopedState();
        Qx::Orvanedm client(http, tested.value("options", "set"));
        client.setAsync(tested.contains("async"));
        success.reset();
        events.clear();
        send(client, tested);
        EXPECT_FALSE(success.has_value()) << "the callback does not run before the response";
        if (tested.contains("request")) {
            EXPECT_EQ(describe(http->requests().back()),
                      tested["request"].get<std::string>() + common + tested["thread"].get<std::string>());
        }
        if (tested.contains("responds")) {
            answer(tested["responds"][0], tested["responds"][1]);
            EXPECT_EQ(success, tested["success"].get<bool>());
            EXPECT_EQ(given, tested["gives"]);
            EXPECT_EQ(events.all().size(), tested.value("events", 0U));
        }
        for (const Qx::Analytics::Report& event : events.all())
            EXPECT_EQ(event.properties.at(L"Workflow"), L"my \u6B6F flow");
    }
}

TEST_F(OrvanedmTest, BaseUrisAreReadOnEachCallAndEmptyIfUnset) {
    EXPECT_EQ(Qx::Orvanedm::baseOrvanedmUri() + Qx::Orvanedm::baseOrvanedmUri_V3(), "");
    const ScopedState current = scopedCurrentOptions("set");
    EXPECT_EQ(Qx::Orvanedm::baseOrvanedmUri(), "https://first/orvanedm");
    EXPECT_EQ(Qx::Orvanedm::baseOrvanedmUri_V3(), "https://third");
    EXPECT_EQ(Qx::Orvanedm::baseOrvanedmUri("none") + Qx::Orvanedm::baseOrvanedmUri_V3("none"), "");
    const auto options = Qx::ApplicationOptions::get("set");
    options->set(L"orvaneServiceUrl", L"https://moved");
    EXPECT_EQ(Qx::Orvanedm::baseOrvanedmUri(), "https://moved");
    std::wstring value;
    EXPECT_TRUE(options->tryGet(L"orvaneServiceUrl", value));
    options->unset(L"orvaneServiceUrl");
    EXPECT_FALSE(options->tryGet(L"orvaneServiceUrl", value));
    EXPECT_EQ(value, L"https://moved") << "an option that is not set leaves the value unchanged";
}

TEST_F(OrvanedmTest, RequestsSayWhereTheyWereBuilt) {
    for (const char* operation : {"folder", "status", "access"})
        send(orvanedm, {{"operation", operation}});
    std::set<std::uint_least32_t> lines;
    for (const Qx::HTTPRequest& request : http->requests()) {
        const boost::source_location& location = request.getLocation();
        EXPECT_TRUE(std::string(location.file_name()).ends_with("Orvanedm.cpp")) << location.file_name();
        EXPECT_NE(std::string(location.function_name()).find("Qx::" + request.getThreadName()), std::string::npos)
            << location;
        EXPECT_GT(location.column(), 0U);
        lines.insert(location.line());
    }
    EXPECT_EQ(lines.size(), 3U);
}

TEST_F(OrvanedmTest, AsyncAppliesWhenARequestIsBuiltAndCopiesHaveTheirOwn) {
    Qx::Orvanedm copy = orvanedm;
    copy.setAsync(true);
    Qx::Orvanedm assigned(nullptr, "other");
    assigned = copy;
    copy.setAsync(false);
    std::vector<Qx::HTTPRequest> requests(3, Qx::HTTPRequest(BOOST_CURRENT_LOCATION));
    orvanedm.buildOrvaneFolderContentsRequest(link, {}, keepContents, requests[0]);
    assigned.buildOrvaneFolderContentsRequest(link, {}, keepContents, requests[1]);
    copy.buildOrvaneFolderContentsRequest(link, {}, keepContents, requests[2]);
    EXPECT_TRUE(http->requests().empty()) << "building a request sends nothing";
    for (const Qx::HTTPRequest& request : requests)
        EXPECT_EQ(request.executionType == ExecutionType::CLIENT_THREAD, &request == &requests[1]);
    assigned.getFolderContents(requests[0]);
    EXPECT_EQ(http->requests().back().executionType, ExecutionType::CALLING_THREAD);
    assigned.requestFullAssemblyAccess("v", keepAccess, "LATEST");
    EXPECT_TRUE(http->requests().back().getURL().starts_with("https://first/")) << "a copy keeps its options set";

    std::size_t answered = 0;
    orvanedm.getFolderContents(requests, [&](std::vector<Qx::HTTPResponse> r) { answered = r.size(); });
    EXPECT_EQ(http->waiting(), 5U);
    EXPECT_EQ(http->requests().back().executionType, ExecutionType::CLIENT_THREAD);
    http->answerAll();
    EXPECT_EQ(answered, 3U);
}

TEST_F(OrvanedmTest, ACallbackThatThrowsSuppressesTheEventAndLeavesTheClientUsable) {
    const auto refuse = [](bool, const auto&) { throw std::runtime_error("no"); };
    orvanedm.getFullAssemblyStatus("v", refuse, "ACTUAL", L"");
    EXPECT_THROW(answer(200, "{}"), std::runtime_error);
    EXPECT_TRUE(events.all().empty());
    Qx::Orvanedm(orvanedm).getFullAssemblyStatus("v", keepDocument, "ACTUAL", L""); // The callback outlives the copy.
    answer(200, "{}");
    EXPECT_EQ(success, true);
    EXPECT_EQ(events.all().size(), 1U);
}

TEST_F(OrvanedmTest, DeepNestingDoesNotExhaustTheStack) {
    constexpr std::size_t million = 1'000'000;
    const auto nested = [](std::size_t levels) { return std::string(levels, '[') + std::string(levels, ']'); };
    const std::vector<std::pair<std::string, bool>> bodies{{nested(1024), true},
                                                           {nested(million), false},
                                                           {std::string(million, '['), false},
                                                           {R"({"data":)" + nested(1000) + "}", true},
                                                           {R"({"data":)" + nested(million) + "}", false}};
    std::function<void()> askForAll = [&] {
        for (const auto& [body, isJSON] : bodies) {
            events.clear();
            orvanedm.getFullAssemblyStatus("v", keepDocument, "ACTUAL", L"");
            answer(200, body);
            EXPECT_EQ(success, isJSON) << body.size();
        }
    };
    pthread_attr_t small;
    pthread_attr_init(&small);
    pthread_attr_setstacksize(&small, std::size_t{256} << 10);
    const auto run = [](void* function) -> void* { return (*static_cast<decltype(&askForAll)>(function))(), nullptr; };
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, &small, run, &askForAll), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&small);
}

} // namespace

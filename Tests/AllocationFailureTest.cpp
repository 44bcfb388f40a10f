// Tests what happens when memory runs out: makes each allocation of the library's operations fail
// once, and each allocation of the HTTP client, on the calling thread and on its own threads.

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Status.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Orvanedm.h"
#include "Testing/PreparedHTTPClient.h"
#include "Testing/ScopedState.h"
#include "Tests/Support/Answers.h"
#include "Tests/Support/Cases.h"
#include "Tests/Support/RawServer.h"
#include "Tests/Support/Sending.h"
#include "Tests/Support/WithoutMemory.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <curl/curl.h>
#include <functional>
#include <malloc.h>
#include <utility>

namespace {

using namespace Orvane::Testing;
using Orvane::FolderContentLink;
using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;
using Qx::CurlHTTPClient;
using Qx::HTTPRequest;
using Qx::HTTPResponse;
using Type = HTTPRequest::ExecutionType;
using namespace std::chrono_literals;

const Qx::JSONNode& root() {
    static const Qx::JSONNode node(wholeAssembly());
    return node;
}

// For a long text, the parser's buffers are allocated beforehand, which may fail too.
TEST(JSONNodeWithoutMemory, ConstructorThrowsAndParseFails) {
    for (const auto& [odd, size] :
         {std::pair("", std::size_t{1000}), std::pair("1e999,\"\\ud83d\",", std::size_t{1000}),
          std::pair("1e999,\"\\ud83d\",", std::size_t{5'000'000})}) {
        const std::string text = '[' + std::string(odd) + '"' + std::string(size, 'x') + "\"]";
        EXPECT_GT(expectThrownEachTime([&] { const Qx::JSONNode node(text); }), 3U);
        const auto parse = [&] {
            Qx::Status status;
            const bool isParsed = Qx::JSONNode::parse(text, status).has_value();
            EXPECT_EQ(isParsed, status.isOk());
        };
        EXPECT_GT(failEachAllocation([&](auto run) { run(parse); }), 3U);
    }
}

class DocumentWithoutMemory : public testing::Test {
protected:
    const FullAssemblyDataV3 document{root()};
    const Json answers = answersOf(document, wholeAssemblyIds);
};

// A target that has received only part of the source must still be a valid document.
TEST_F(DocumentWithoutMemory, MayBeAssignedAgainAndDestroyed) {
    const FullAssemblyDataV3 other(
        Qx::JSONNode(R"({"data":{"id":"some other id, longer than what fits in place"},"included":{
        "projects":[{"type":"projects"}],"files":[{"type":"files"}],"folders":[{"type":"folders"}]}})"));
    const std::pair<const char*, void (*)(FullAssemblyDataV3&, FullAssemblyDataV3&)> ways[] = {
        {"copied", [](FullAssemblyDataV3& target, FullAssemblyDataV3& source) { target = std::as_const(source); }},
        {"moved", [](FullAssemblyDataV3& target, FullAssemblyDataV3& source) { target = std::move(source); }},
        {"move-constructed",
         [](FullAssemblyDataV3&, FullAssemblyDataV3& source) { const FullAssemblyDataV3 made(std::move(source)); }}};
    for (const auto& [name, way] : ways)
        failEachAllocation([&, name = name, way = way](auto run) {
            FullAssemblyDataV3 target = other;
            FullAssemblyDataV3 source = document;
            const WithoutMemory ended = run([&] { way(target, source); });
            EXPECT_EQ(ended.hasThrown, ended.hasFailed) << name;
            if (ended.hasFailed) {
                EXPECT_EQ(answersOf(source, wholeAssemblyIds), answers) << name << ": the source is unchanged";
            }
            target = document;
            EXPECT_EQ(answersOf(target, wholeAssemblyIds), answers) << name;
        });
}

TEST_F(DocumentWithoutMemory, ConstructorsAndQueriesThrowAndLeaveTheDocumentUnchanged) {
    const CapturedEvents events;
    const FullAssemblyData base(root());
    const std::vector<std::function<void()>> operations{
        [] { FullAssemblyDataV3 made(root()); },
        [&] { FullAssemblyDataV3 copy(document); },
        [&] { static_cast<void>(document.getId()); },
        [&] { document.getDeletedParentsCount(); },
        [&] { document.getDeletedParents(); },
        [&] { document.getAccessDeniedParents(); },
        [&] { document.getDirectReferencedFiles(); },
        [&] { base.getDirectReferencedFiles(); },
        [&] { base.getDeletedParents(); },
        [&] { document.getProjectDetails(); },
        [&] { document.getProjectDetailsForFiles(); },
        [&] { document.getProjectMemberships(); },
        [&] { static_cast<void>(document.getProjectName(wholeAssemblyIds.back())); },
        [&] { document.getAllReferencedFiles(); },
        [&] { document.getArchivedParents(); },
        [&] { document.getInactiveParents(); },
        [&] { document.getProject("an id longer than in place"); },
        [&] { document.sendFullAssemblyAnalytics(L"a long workflow"); }};
    for (std::size_t number = 0; number < operations.size(); ++number) {
        EXPECT_GT(expectThrownEachTime(operations[number]), 0U) << "operation " << number;
        EXPECT_EQ(answersOf(document, wholeAssemblyIds), answers) << "operation " << number;
    }
}

class ClientWithoutMemory : public testing::Test {
protected:
    ClientWithoutMemory() { http->hold(); }

    const ScopedState service = scopedOption("set", L"orvaneServiceUrl", L"https://service.example/orvanedm");
    const std::shared_ptr<PreparedHTTPClient> http = std::make_shared<PreparedHTTPClient>();
    Qx::Orvanedm client{http, "set"};
    int calls = 0;
    const std::function<void(bool, const std::shared_ptr<FullAssemblyData>&)> take = [this](bool success,
                                                                                            const auto& document) {
        ++calls;
        EXPECT_EQ(success, document != nullptr);
    };
    const std::function<void()> operations[3] = {
        [this] {
            const auto link = FolderContentLink::fromUrn("urn", "set");
            client.getFolderContents(link, {{"include", "something long"}}, [this](bool, const auto&) { ++calls; });
        },
        [this] { client.getFullAssemblyStatus("urn:x?version=1", take, "ACTUAL", L"a workflow of some length"); },
        [this] {
            client.requestFullAssemblyAccess(
                "urn:x?version=1", [this](bool, const auto&) { ++calls; }, "LATEST");
        }};
};

TEST_F(ClientWithoutMemory, SendsAllOrNothing) {
    for (const auto& operation : operations) {
        const std::size_t failures = failEachAllocation([&](auto run) {
            const WithoutMemory ended = run(operation);
            EXPECT_EQ(ended.hasThrown, ended.hasFailed);
            EXPECT_EQ(http->requests().empty(), ended.hasFailed) << "without memory for all of it, nothing is sent";
            http->clear();
        });
        EXPECT_GT(failures, 10U);
    }
    EXPECT_EQ(calls, 0);
}

TEST_F(ClientWithoutMemory, CompletionsCallBackAtMostOnce) {
    const ScopedState silent = scopedEventSink([](const Qx::Analytics::Report&, bool) {});
    for (const auto& operation : operations)
        for (const HTTPResponse& response :
             {HTTPResponse(200, wholeAssembly()), HTTPResponse(200, "no JSON"), HTTPResponse(403, "{}")}) {
            operation();
            const Qx::HTTPRequest request = http->requests().back();
            const std::size_t failures = failEachAllocation([&](auto run) {
                calls = 0;
                const WithoutMemory ended = run([&] { request.getCallback()(response); });
                EXPECT_LE(calls, 1);
                EXPECT_TRUE(ended.hasThrown || calls == 1) << "the callback is called, or the exception propagates";
            });
            EXPECT_GT(failures, 5U);
        }
}

// Makes libcurl allocate with operator new, so that its allocations fail like all others.
void* resize(void* memory, std::size_t size) {
    void* resized = ::operator new(size, std::nothrow);
    if (resized && memory)
        std::memcpy(resized, memory, std::min(size, malloc_usable_size(memory)));
    if (resized)
        ::operator delete(memory);
    return resized;
}
const CURLcode initialised = curl_global_init_mem(
    CURL_GLOBAL_DEFAULT, [](std::size_t size) { return ::operator new(size, std::nothrow); },
    [](void* memory) { ::operator delete(memory); }, resize,
    [](const char* text) {
        const std::size_t size = std::strlen(text) + 1;
        void* copy = ::operator new(size, std::nothrow);
        return static_cast<char*>(copy ? std::memcpy(copy, text, size) : nullptr);
    },
    [](std::size_t count, std::size_t size) {
        void* memory = ::operator new(count* size, std::nothrow);
        return memory ? std::memset(memory, 0, count * size) : nullptr;
    });

TEST(CurlHTTPClientWithoutMemory, ConstructorThrows) {
    ASSERT_EQ(initialised, CURLE_OK);
    auto made = clientOptions();
    made.tokenSource = [](const std::string&) { return token; };
    EXPECT_GT(expectThrownEachTime([&] { CurlHTTPClient client(made); }), 5U);
}

class CurlHTTPClientWithoutMemoryInBothTypes : public testing::TestWithParam<Type> {};
INSTANTIATE_TEST_SUITE_P(In, CurlHTTPClientWithoutMemoryInBothTypes,
                         testing::Values(Type::CALLING_THREAD, Type::CLIENT_THREAD), [](const auto& tested) {
                             return tested.param == Type::CALLING_THREAD ? "CallingThread" : "ClientThread";
                         });

// A batch that cannot be sent as a whole is not sent at all, and the call throws. On the client's
// own threads, a failure can be reported only to the completions.
TEST_P(CurlHTTPClientWithoutMemoryInBothTypes, SendsABatchWholeOrNotAtAllAndAnswersOnce) {
    auto options = clientOptions();
    const std::string refused(100, 'r');
    const std::string good(100, 'g');
    options.tokenSource = [&](const std::string& refusedToken) { return refusedToken.empty() ? refused : good; };
    const auto serve = Serving::with([&](const std::string& request) {
        return request.find(good) == std::string::npos ? "HTTP/1.1 401 No\r\nContent-Length: 0\r\n\r\n"
                                                       : Serving::ok("{}");
    });
    options.executor = [](const std::function<void()>& completion) { completion(); };
    options.onAttempt = [](const Qx::HTTPAttempt&) {};
    for (const char* failingThread : {static_cast<const char*>(nullptr), "orvane-transfer", "orvane-token"}) {
        const RawServer server(serve);
        const RawServer next(Serving::well);
        std::size_t number = 0;
        std::ptrdiff_t sent = 0;
        for (bool hasFailed = true; hasFailed; ++number) {
            std::atomic<int> completions = 0;
            std::atomic<int> batches = 0;
            std::vector<HTTPRequest> batch(
                3, makeRequest(server.url("/"), GetParam(), [&](const auto&) { ++completions; }));
            batch[1].setURL("refused");
            bool isSent = false;
            {
                CurlHTTPClient client(options);
                Allocations allocations;
                allocations.fail(number, failingThread);
                try {
                    client.whenAllRequests(
                        batch, [&](const auto&) { ++batches; }, GetParam());
                    isSent = true;
                } catch (const std::bad_alloc&) {
                }
                while (batches < (isSent ? 1 : 0))
                    std::this_thread::sleep_for(1ms);
                hasFailed = allocations.stopFailing();
                HTTPRequest withoutToken = makeRequest(next.url("/"), Type::CALLING_THREAD);
                withoutToken.setAuthType(HTTPRequest::AuthType::NONE);
                EXPECT_EQ(send(client, withoutToken).getStatus(), 200) << number;
            }
            sent += isSent ? 1 : 0;
            EXPECT_EQ(completions, isSent ? 3 : 0) << number;
            EXPECT_EQ(batches, isSent ? 1 : 0) << number;
            EXPECT_TRUE(isSent || !failingThread) << number;
        }
        EXPECT_GT(number, 1U);
        const std::string received = server.received();
        EXPECT_TRUE(failingThread || countExchanges(received) == 4 * sent) << received;
        EXPECT_EQ(next.received().find("Authorization"), std::string::npos) << "no token of the previous requests";
    }
}

} // namespace

// What happens when there is no memory: each allocation of each operation fails once.

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Status.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Orvanedm.h"
#include "Tests/Support/Answers.h"
#include "Tests/Support/Cases.h"
#include "Tests/Support/FakeHTTPClient.h"
#include "Tests/Support/ScopedState.h"
#include "Tests/Support/WithoutMemory.h"

#include <functional>
#include <gtest/gtest.h>
#include <utility>

namespace {

using Orvane::FolderContentLink;
using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;
using Qx::HTTPResponse;

const std::vector<std::string> ids{"urn:vrnk.dorlqa:dm.lineage:A", "urn:vrnk.dorlqa:fs.folder:folderA",
                                   "1234567890123456"};

// Texts beyond what a string holds in place, so that each field asks for memory.
const std::string& body() {
    static const std::string text = [] {
        Json whole = Json::parse(wholeAssembly());
        for (const auto& [kind, status] :
             {std::pair("projects", "Deleted"), std::pair("folders", "Archived"), std::pair("folders", "Inactive")})
            for (const char* each : {status, "Active"})
                whole["included"][kind].push_back(
                    {{"id", each + std::string(" parent's id of some length")}, {"type", kind}, {"status", each}});
        return whole.dump();
    }();
    return text;
}

const Qx::JSONNode& root() {
    static const Qx::JSONNode node(body());
    return node;
}

// Room for a long text is made ahead of the parser, and may be missing too.
TEST(JSONNodeWithoutMemory, IsNotMade) {
    for (const std::size_t size : {std::size_t{1000}, std::size_t{5'000'000}}) {
        const std::string text = '"' + std::string(size, 'x') + '"';
        EXPECT_GT(expectThrownEachTime([&] { const Qx::JSONNode node(text); }), 3U);
        const auto parse = [&] {
            Qx::JSONNode node("[]");
            Qx::Status status;
            const bool success = Qx::JSONNode::parse(text, 0, node, status);
            EXPECT_EQ(success, node.toText() != "[]");
            EXPECT_EQ(success, status.isOk());
        };
        EXPECT_GT(failEachAllocation([&](auto run) { run(parse); }), 3U);
    }
}

class DocumentWithoutMemory : public testing::Test {
protected:
    const FullAssemblyDataV3 document{root()};
    const Json answers = answersOf(document, ids);
};

// A target that is left with part of the source must still be a document.
TEST_F(DocumentWithoutMemory, MayBeAssignedAgainAndDestroyed) {
    const FullAssemblyDataV3 other(
        Qx::JSONNode(R"({"data":{"id":"some other id, longer than what fits in place"},"included":{
        "projects":[{"type":"projects"}],"files":[{"type":"files"}],"folders":[{"type":"folders"}]}})"));
    const std::pair<const char*, void (*)(FullAssemblyDataV3&, FullAssemblyDataV3&)> ways[] = {
        {"copied", [](FullAssemblyDataV3& target, FullAssemblyDataV3& source) { target = std::as_const(source); }},
        {"moved", [](FullAssemblyDataV3& target, FullAssemblyDataV3& source) { target = std::move(source); }},
        {"made by a move",
         [](FullAssemblyDataV3&, FullAssemblyDataV3& source) { const FullAssemblyDataV3 made(std::move(source)); }}};
    for (const auto& [name, way] : ways)
        failEachAllocation([&, name = name, way = way](auto run) {
            FullAssemblyDataV3 target = other;
            FullAssemblyDataV3 source = document;
            const WithoutMemory ended = run([&] { way(target, source); });
            EXPECT_EQ(ended.hasThrown, ended.hasFailed) << name;
            if (ended.hasFailed) {
                EXPECT_EQ(answersOf(source, ids), answers) << name << ": the source keeps what it has";
            }
            target = document;
            EXPECT_EQ(answersOf(target, ids), answers) << name;
        });
}

TEST_F(DocumentWithoutMemory, ThrowsWhereItIsMadeCopiedOrAskedAndStaysAsItIs) {
    const ScopedEvents events;
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
        [&] { static_cast<void>(document.getProjectName(ids.back())); },
        [&] { document.getAllReferencedFiles(); },
        [&] { document.getArchivedParents(); },
        [&] { document.getInactiveParents(); },
        [&] { document.getProject("an id longer than in place"); },
        [&] { document.sendFullAssemblyAnalytics(L"a long workflow"); }};
    for (std::size_t number = 0; number < operations.size(); ++number) {
        EXPECT_GT(expectThrownEachTime(operations[number]), 0U) << "operation " << number;
        EXPECT_EQ(answersOf(document, ids), answers) << "operation " << number;
    }
}

class ClientWithoutMemory : public testing::Test {
protected:
    const ScopedState service = scopedOption("set", L"orvaneServiceUrl", L"https://service.example/orvanedm");
    const std::shared_ptr<FakeHTTPClient> http = std::make_shared<FakeHTTPClient>();
    Qx::Orvanedm client{http, "set"};
    int calls = 0;
    const std::function<void()> operations[3] = {
        [this] {
            const auto link = FolderContentLink::fromUrn("urn", "set");
            client.getFolderContents(link, {{"include", "something long"}}, [this](bool success, const auto& contents) {
                ++calls;
                EXPECT_TRUE(success || contents.toText() == "{}");
            });
        },
        [this] {
            const auto count = [this](bool success, const auto& data) {
                ++calls;
                EXPECT_EQ(success, data != nullptr);
            };
            client.getFullAssemblyStatus("urn:x?version=1", count, "ACTUAL", L"a workflow of some length");
        },
        [this] {
            client.requestFullAssemblyAccess(
                "urn:x?version=1", [this](bool, const auto&) { ++calls; }, "LATEST");
        }};
};

TEST_F(ClientWithoutMemory, SendsNothingOrAll) {
    for (const auto& operation : operations) {
        const std::size_t failures = failEachAllocation([&](auto run) {
            const WithoutMemory ended = run(operation);
            EXPECT_EQ(ended.hasThrown, ended.hasFailed);
            EXPECT_EQ(http->queued.empty(), ended.hasFailed) << "what lacks memory for a part of it goes nowhere";
            http->queued = {};
        });
        EXPECT_GT(failures, 10U);
    }
    EXPECT_EQ(calls, 0);
}

TEST_F(ClientWithoutMemory, CompletionsCallBackAtMostOnce) {
    const ScopedState silent = scopedEventSink([](const Qx::Analytics::Report&, bool) {});
    for (const auto& operation : operations)
        for (const HTTPResponse& response :
             {HTTPResponse(200, body()), HTTPResponse(200, "no JSON"), HTTPResponse(403, "{}")}) {
            operation();
            const Qx::HTTPRequest request = http->queued.back();
            const std::size_t failures = failEachAllocation([&](auto run) {
                calls = 0;
                const WithoutMemory ended = run([&] { request.getCallback()(response); });
                EXPECT_LE(calls, 1);
                EXPECT_TRUE(ended.hasThrown || calls == 1) << "the caller is told, or the exception comes out";
            });
            EXPECT_GT(failures, 5U);
        }
}

} // namespace

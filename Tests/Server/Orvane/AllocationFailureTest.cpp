// What happens when there is no memory: each allocation of each operation fails once.

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Status.h"
#include "Fuzz/Answers.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Orvanedm.h"
#include "Tests/Support/Documents.h"
#include "Tests/Support/FailingAllocation.h"
#include "Tests/Support/FakeHTTPClient.h"
#include "Tests/Support/ScopedState.h"

#include <functional>
#include <gtest/gtest.h>
#include <utility>

namespace {

using Orvane::FolderContentLink;
using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;
using OrvaneFuzz::Answers;
using OrvaneFuzz::answersOf;
using Qx::HTTPResponse;

const std::vector<std::string> ids{"urn:vrnk.dorlqa:dm.lineage:A", "urn:vrnk.dorlqa:fs.folder:folderA",
                                   "1234567890123456"};

// Texts beyond what a string holds in place, so that each field asks for memory.
const Qx::JSONNode& root() {
    static const Qx::JSONNode node = [] {
        DocumentParts parts;
        parts.projects += R"(,{"id":"a project id of some length","type":"projects","status":"Deleted"},
                             {"id":"another project id of some length","type":"projects"})";
        parts.folders += R"(,{"id":"a folder id of some length","type":"folders","status":"Archived"},
                             {"id":"another folder id of some length","type":"folders","status":"Active"})";
        return parts.root();
    }();
    return node;
}

void expectException(bool hasThrown) {
    EXPECT_TRUE(hasThrown);
}

// Room for a long text is made ahead of the parser, and may be missing too.
TEST(JSONNodeWithoutMemory, IsNotMade) {
    for (const std::size_t size : {std::size_t{1000}, std::size_t{5'000'000}}) {
        const std::string text = '"' + std::string(size, 'x') + '"';
        EXPECT_GT(failEachAllocation([&] { const Qx::JSONNode node(text); }, expectException), 3U);
        const auto parse = [&] {
            Qx::JSONNode node("[]");
            Qx::Status status;
            const bool success = Qx::JSONNode::parse(text, 0, node, status);
            EXPECT_EQ(success, node.toText() != "[]");
            EXPECT_EQ(success, status.isOk());
        };
        EXPECT_GT(failEachAllocation(parse, [](bool) {}), 3U);
    }
}

template <class Document>
class DocumentWithoutMemory : public testing::Test {
protected:
    void expectUnchanged() { EXPECT_EQ(answersOf(document, ids), answers); }

    const Document document{root()};
    const Answers answers = answersOf(document, ids);
};
using Generations = testing::Types<FullAssemblyData, FullAssemblyDataV3>;
TYPED_TEST_SUITE(DocumentWithoutMemory, Generations);

TYPED_TEST(DocumentWithoutMemory, IsNotMade) {
    EXPECT_GT(failEachAllocation([] { TypeParam made(root()); }, expectException), 15U);
}

TYPED_TEST(DocumentWithoutMemory, IsNotCopied) {
    const auto check = [&](bool hasThrown) {
        EXPECT_TRUE(hasThrown);
        this->expectUnchanged();
    };
    EXPECT_GT(failEachAllocation([&] { TypeParam copy(this->document); }, check), 10U);
}

// A target that is left with part of the source must still be a document.
TYPED_TEST(DocumentWithoutMemory, MayBeAssignedAgainAndDestroyed) {
    const TypeParam other(json(R"({"data":{"id":"some other id, longer than what fits in place"},"included":{
        "projects":[{"type":"projects"}],"files":[{"type":"files"}],"folders":[{"type":"folders"}]}})"));
    const std::pair<const char*, void (*)(TypeParam&, TypeParam&)> ways[] = {
        {"copied", [](TypeParam& target, TypeParam& source) { target = std::as_const(source); }},
        {"moved", [](TypeParam& target, TypeParam& source) { target = std::move(source); }},
        {"made by a move", [](TypeParam&, TypeParam& source) { const TypeParam made(std::move(source)); }}};
    for (const auto& way : ways)
        for (auto [number, hasFailed] = std::pair<std::size_t, bool>(0, true); hasFailed; ++number) {
            TypeParam target = other;
            TypeParam source = this->document;
            const WithoutMemory ended = runWithoutMemory(number, [&] { way.second(target, source); });
            hasFailed = ended.hasFailed;
            EXPECT_EQ(ended.hasThrown, hasFailed) << way.first;
            if (hasFailed) {
                EXPECT_EQ(answersOf(source, ids), this->answers) << way.first << ": the source keeps what it has";
            }
            target = this->document;
            EXPECT_EQ(answersOf(target, ids), this->answers) << way.first;
        }
}

TYPED_TEST(DocumentWithoutMemory, IsLeftAloneByItsQueries) {
    const ScopedEvents events;
    std::vector<std::pair<const char*, std::function<void(const TypeParam&)>>> queries{
        {"getId", [](const auto& asked) { static_cast<void>(asked.getId()); }},
        {"getDeletedParentsCount", [](const auto& asked) { asked.getDeletedParentsCount(); }},
        {"getDeletedParents", [](const auto& asked) { asked.getDeletedParents(); }},
        {"getAccessDeniedParents", [](const auto& asked) { asked.getAccessDeniedParents(); }},
        {"getDirectReferencedFiles", [](const auto& asked) { asked.getDirectReferencedFiles(); }},
        {"getProjectDetails", [](const auto& asked) { asked.getProjectDetails(); }},
        {"getProjectDetailsForFiles", [](const auto& asked) { asked.getProjectDetailsForFiles(); }},
        {"getProjectMemberships", [](const auto& asked) { asked.getProjectMemberships(); }},
        {"getProjectName", [](const auto& asked) { static_cast<void>(asked.getProjectName(ids.back())); }},
        {"sendFullAssemblyAnalytics", [](const auto& asked) { asked.sendFullAssemblyAnalytics(L"a long workflow"); }}};
    if constexpr (std::is_same_v<TypeParam, FullAssemblyDataV3>) {
        queries.emplace_back("getAllReferencedFiles", [](const auto& asked) { asked.getAllReferencedFiles(); });
        queries.emplace_back("getArchivedParents", [](const auto& asked) { asked.getArchivedParents(); });
        queries.emplace_back("getProject", [](const auto& asked) { asked.getProject("an id longer than in place"); });
    }
    for (const auto& query : queries) {
        const auto check = [&](bool hasThrown) {
            EXPECT_TRUE(hasThrown) << query.first;
            this->expectUnchanged();
        };
        EXPECT_GT(failEachAllocation([&] { query.second(this->document); }, check), 0U) << query.first;
    }
}

class ClientWithoutMemory : public testing::Test {
protected:
    using Operation = std::function<void()>;

    std::vector<Operation> operations() {
        return {[this] {
                    client.getFolderContents(FolderContentLink::fromUrn("urn", "set"), {{"include", "something long"}},
                                             [&calls = calls](bool success, const Qx::JSONNode& contents) {
                                                 ++calls;
                                                 EXPECT_TRUE(success || contents.toText() == "{}");
                                             });
                },
                [this] {
                    const auto count = [&calls = calls](bool success, const std::shared_ptr<FullAssemblyData>& data) {
                        ++calls;
                        EXPECT_EQ(success, data != nullptr);
                    };
                    client.getFullAssemblyStatus("urn:x?version=1", count, "ACTUAL", L"a workflow of some length");
                },
                [this] {
                    client.requestFullAssemblyAccess(
                        "urn:x?version=1", [&calls = calls](bool, const FullAssemblyData&) { ++calls; }, "LATEST");
                }};
    }

    const ScopedState service = scopedOption("set", L"orvaneServiceUrl", L"https://service.example/orvanedm");
    const std::shared_ptr<FakeHTTPClient> http = std::make_shared<FakeHTTPClient>();
    Qx::Orvanedm client{http, "set"};
    int calls = 0;
};

TEST_F(ClientWithoutMemory, SendsNothingOrAll) {
    for (const Operation& operation : operations()) {
        const auto sendAndForget = [&] {
            operation();
            http->queued = {};
        };
        EXPECT_GT(failEachAllocation(sendAndForget, expectException), 10U);
        EXPECT_TRUE(http->queued.empty()) << "what was formed without memory for all of it goes nowhere";
    }
    EXPECT_EQ(calls, 0);
}

TEST_F(ClientWithoutMemory, CompletionsCallBackAtMostOnce) {
    const ScopedState silent = scopedEventSink([](const Qx::Analytics::Report&, bool) {});
    for (const Operation& operation : operations())
        for (const HTTPResponse& response :
             {HTTPResponse(200, root().toText()), HTTPResponse(200, "no JSON"), HTTPResponse(403, "{}")}) {
            operation();
            const auto complete = [&] {
                calls = 0;
                http->queued.back().getCallback()(response);
            };
            const auto check = [&](bool hasThrown) {
                EXPECT_LE(calls, 1);
                EXPECT_TRUE(hasThrown || calls == 1) << "the caller is told, or the exception comes out";
            };
            EXPECT_GT(failEachAllocation(complete, check), 5U);
            EXPECT_EQ(calls, 1) << "with all the memory it asks for";
        }
}

} // namespace

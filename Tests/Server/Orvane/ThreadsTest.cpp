// Tests of concurrent use, mainly for the thread sanitizer.

#include "Base/QxBaseCore10/JSONNode.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Orvanedm.h"
#include "Testing/PreparedHTTPClient.h"
#include "Testing/ScopedState.h"
#include "Tests/Support/Answers.h"
#include "Tests/Support/Cases.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

namespace {

using namespace Orvane::Testing;
using Orvane::FolderContentLink;
using Orvane::Payloads::FullAssemblyDataV3;

constexpr int rounds = 200;

// Runs `work` on eight threads at the same time.
void runOnEight(const std::function<void()>& work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back(work);
    for (std::thread& thread : threads)
        thread.join();
}

TEST(Threads, MayReadOneNodeAndQueryOneDocumentAtTheSameTime) {
    const Qx::JSONNode node(R"({"a":"1","b":"2"})");
    const FullAssemblyDataV3 document{Qx::JSONNode(wholeAssembly())};
    const Json expected = answersOf(document, wholeAssemblyIds);
    const ScopedState sink = scopedEventSink([](const Qx::Analytics::Report&, bool) {});
    std::atomic<int> wrong = 0;
    runOnEight([&] {
        for (int round = 0; round < rounds; ++round) {
            for (const auto& [key, value] : {std::pair("a", "1"), std::pair("b", "2")})
                wrong += node.exists(key) && node[key].asHString("") == value ? 0 : 1;
            const FullAssemblyDataV3 copy = document;
            wrong += answersOf(copy, wholeAssemblyIds) == expected ? 0 : 1;
            wrong += answersOf(document, wholeAssemblyIds) == expected ? 0 : 1;
            document.sendFullAssemblyAnalytics(L"workflow");
        }
    });
    EXPECT_EQ(wrong, 0);
}

TEST(Threads, MaySendRequestsWhileSettingsChange) {
    const auto http = std::make_shared<PreparedHTTPClient>(Qx::HTTPResponse(200, wholeAssembly()));
    Qx::Orvanedm client(http, "threads");
    std::atomic<bool> isDone = false;
    std::thread changing([&] {
        while (!isDone) {
            const ScopedState service = scopedOption("threads", L"orvaneServiceUrl", L"https://one");
            const ScopedState v3Service = scopedOption("threads", L"orvaneV3ServiceUrl", L"https://two");
            const ScopedState flag = scopedFlag("data-show-non-cad-components");
            const ScopedState indirect = scopedIndirectXRefProjectDetails();
            const ScopedState sink = scopedEventSink([](const Qx::Analytics::Report&, bool) {});
            const ScopedState current = scopedCurrentOptions("threads");
        }
    });
    std::atomic<int> successes = 0;
    const auto count = [&](bool success, const auto&) { successes += success ? 1 : 0; };
    runOnEight([&] {
        for (int round = 0; round < rounds; ++round) {
            Qx::Orvanedm copy = client;
            copy.setAsync(round % 2 == 0);
            client.getFolderContents(FolderContentLink::fromUrn("urn"), {{"key", "value"}}, count);
            client.getFullAssemblyStatus("urn", count, "ACTUAL", L"workflow");
            copy.requestFullAssemblyAccess("urn", count, "LATEST");
        }
    });
    isDone = true;
    changing.join();
    EXPECT_EQ(successes, 8 * rounds * 3);
}

} // namespace

// What may run at the same time: for the thread sanitizer above all.

#include "Fuzz/Answers.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Orvanedm.h"
#include "Tests/Support/AnsweringClient.h"
#include "Tests/Support/Documents.h"
#include "Tests/Support/ScopedState.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

namespace {

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

TEST(Threads, MayAskOneDocumentEverything) {
    const FullAssemblyDataV3 document(DocumentParts().root());
    const std::vector<std::string> ids{"urn:vrnk.dorlqa:dm.lineage:A", "urn:vrnk.dorlqa:fs.folder:folderA",
                                       "1234567890123456"};
    const auto expected = OrvaneFuzz::answersOf(document, ids);
    std::atomic<int> events = 0;
    const ScopedState sink = scopedEventSink([&](const Qx::Analytics::Report&, bool) { ++events; });
    std::atomic<int> different = 0;
    runOnEight([&] {
        for (int round = 0; round < rounds; ++round) {
            const FullAssemblyDataV3 copy = document;
            different += OrvaneFuzz::answersOf(copy, ids) == expected ? 0 : 1;
            different += OrvaneFuzz::answersOf(document, ids) == expected ? 0 : 1;
            document.sendFullAssemblyAnalytics(L"workflow");
        }
    });
    EXPECT_EQ(different, 0);
    EXPECT_EQ(events, 8 * rounds);
}

TEST(Threads, MayFormRequestsWhileSettingsChange) {
    const auto http = std::make_shared<AnsweringClient>(DocumentParts().root().toText());
    Qx::Orvanedm client(http, "threads");
    const auto options = Qx::ApplicationOptions::get("threads");
    std::atomic<bool> isDone = false;
    std::thread changing([&] {
        for (bool on = true; !isDone; on = !on) {
            options->set(L"orvaneServiceUrl", on ? L"https://one" : L"https://two");
            options->set(L"orvaneV3ServiceUrl", on ? L"https://one" : L"https://two");
            Qx::FlagsManager::get().setFlag("data-show-non-cad-components", on);
            Qx::Utility::setIndirectXRefProjectDetailsEnabled(on);
            Qx::Analytics::setEventSink([](const Qx::Analytics::Report&, bool) {});
            Qx::ICloudBrowser::installOptionsName("threads");
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
    Qx::Analytics::setEventSink(nullptr);
    Qx::FlagsManager::get().setFlag("data-show-non-cad-components", false);
    Qx::Utility::setIndirectXRefProjectDetailsEnabled(false);
    Qx::ICloudBrowser::install(nullptr);
}

} // namespace

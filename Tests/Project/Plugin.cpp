// A plug-in, which PluginTest.cpp loads, uses and unloads repeatedly.

#include "Server/Orvane/Orvanedm.h"
#include "Server/Orvane/Payloads/FullAssemblyData.h"
#include "Testing/PreparedHTTPClient.h"
#include "Testing/ScopedState.h"

using namespace Orvane::Testing;

// Opens an assembly, and restores the state of the process. Returns whether that succeeded.
extern "C" [[gnu::visibility("default")]] bool openAssembly() {
    const ScopedState service = scopedOption("plugin", L"orvaneV3ServiceUrl", L"https://v3");
    const CapturedEvents events;
    bool hasOpened = false;
    Qx::Orvanedm orvanedm(std::make_shared<PreparedHTTPClient>(PreparedAnswers::sample()), "plugin");
    orvanedm.getFullAssemblyStatus(
        "urn:vrnk.dorlqa:fs.file:gearbox-asm?version=7",
        [&](bool success, const auto& assembly) {
            hasOpened = success && assembly->getDirectReferencedFiles().size() == 13;
        },
        "ACTUAL", L"");
    return hasOpened && events.all().size() == 1;
}

// What a host loads, uses and unloads again and again: PluginTest.cpp does so.

#include "Server/Orvane/Orvanedm.h"
#include "Server/Orvane/Payloads/FullAssemblyData.h"
#include "Testing/PreparedHTTPClient.h"
#include "Testing/ScopedState.h"

using namespace Orvane::Testing;

// Opens an assembly, and leaves the state of the process as it was.
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

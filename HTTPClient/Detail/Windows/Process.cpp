#include "HTTPClient/Detail/Process.h"

#include <utility>
#include <windows.h>

namespace Qx::Detail {

std::thread startThread(std::function<void()> run) {
    return std::thread(std::move(run));
}

// Once the process ends, Windows has ended its threads, in the middle of whatever they did.
long processId() {
    using IsEnding = BOOLEAN(NTAPI*)();
    static const auto isEnding = reinterpret_cast<IsEnding>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlDllShutdownInProgress")));
    return isEnding && isEnding() ? 1 : 0;
}

} // namespace Qx::Detail

#include "HTTPClient/Detail/Process.h"

#include <utility>
#include <windows.h>

namespace Qx::Detail {

std::thread startThread(std::function<void()> run) {
    return std::thread(std::move(run));
}

// When a process ends, Windows first terminates its other threads, whatever they are doing.
long processId() {
    using IsEnding = BOOLEAN(NTAPI*)();
    static const auto isEnding = reinterpret_cast<IsEnding>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlDllShutdownInProgress")));
    return isEnding && isEnding() ? 1 : 0;
}

} // namespace Qx::Detail

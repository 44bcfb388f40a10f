#include "Host/Interrupts.h"

#include <atomic>
#include <windows.h>

namespace OrvaneHost {

namespace {

std::atomic<bool> isInterrupted = false;

// Called on a thread that the system starts for it.
BOOL WINAPI onInterrupt(DWORD) {
    isInterrupted = true;
    isInterrupted.notify_one();
    return TRUE;
}

} // namespace

void holdInterrupts() {
    SetConsoleCtrlHandler(&onInterrupt, TRUE);
}

void waitForInterrupt() {
    isInterrupted.wait(false);
    SetConsoleCtrlHandler(&onInterrupt, FALSE);
}

} // namespace OrvaneHost

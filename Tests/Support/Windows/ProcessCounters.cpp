#include "Tests/Support/ProcessResources.h"

#include <algorithm>
#include <cstdlib>
#include <windows.h>

#include <psapi.h>
#include <tlhelp32.h>

namespace {

PROCESS_MEMORY_COUNTERS memory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters;
}

} // namespace

std::ptrdiff_t countDescriptors() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<std::ptrdiff_t>(count);
}

std::ptrdiff_t countThreads() {
    std::ptrdiff_t count = 0;
    const HANDLE threads = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL hasNext = Thread32First(threads, &entry); hasNext != FALSE; hasNext = Thread32Next(threads, &entry))
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    CloseHandle(threads);
    return count;
}

std::size_t heapInUse() {
    return 0; // The heaps of a process report only how much memory they have obtained from the system.
}

Orvane::Testing::ScopedState scopedVariable(const char* name, const std::string& value) {
    _putenv_s(name, value.c_str());
    return Orvane::Testing::ScopedState([name] { _putenv_s(name, ""); });
}

PeakMemory::PeakMemory() : start_(memory().WorkingSetSize) {}

// Uses the current memory, because the peak that Windows reports is that of the whole lifetime of
// the process.
std::size_t PeakMemory::growth() const {
    return std::max<std::size_t>(memory().WorkingSetSize, start_) - start_;
}

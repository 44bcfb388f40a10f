#include "Tests/Support/ProcessMemory.h"
#include "Tests/Support/ProcessResources.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <thread>
#include <unistd.h>

namespace {

std::ptrdiff_t countEntries(const char* folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

} // namespace

std::ptrdiff_t countDescriptors() {
    return countEntries("/proc/self/fd");
}

std::ptrdiff_t countThreads() {
    // A sanitizer starts a thread of its own with the first one, and a thread that was joined may
    // still be listed.
    std::string first;
    std::thread([&] { first = "/proc/self/task/" + std::to_string(gettid()); }).join();
    while (std::filesystem::exists(first))
        std::this_thread::yield();
    return countEntries("/proc/self/task");
}

std::size_t heapInUse() {
    return mallinfo2().uordblks;
}

Orvane::Testing::ScopedState scopedVariable(const char* name, const std::string& value) {
    setenv(name, value.c_str(), 1);
    return Orvane::Testing::ScopedState([name] { unsetenv(name); });
}

PeakMemory::PeakMemory() : start_(memoryInUse("VmRSS:")) {
    std::ofstream("/proc/self/clear_refs") << "5";
}

std::size_t PeakMemory::growth() const {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return 0;
#else
    return std::max(memoryInUse("VmHWM:"), start_) - start_;
#endif
}

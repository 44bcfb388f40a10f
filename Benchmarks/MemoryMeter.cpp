#include "Benchmarks/MemoryMeter.h"

#include "Tests/Support/Allocations.h"
#include "Tests/Support/ProcessMemory.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace OrvaneBenchmarks {

namespace {

MemoryUse measure(const std::function<void()>& code) {
    const std::size_t programBefore = memoryInUse("RssFile:");
    std::ofstream("/proc/self/clear_refs") << "5"; // Resets the peak.
    const std::size_t before = memoryInUse("VmRSS:");
    const Allocations allocations;
    code();
    const std::int64_t made = allocations.made();
    // Pages of the program's own files that were loaded in the meantime are not memory that the
    // code uses.
    const std::size_t program = memoryInUse("RssFile:") - programBefore;
    return {made, static_cast<std::int64_t>(std::max(memoryInUse("VmHWM:"), before) - before - program)};
}

[[noreturn]] void measureAndExit(const std::function<void()>& code, int pipe) {
    MemoryUse use;
    std::thread([&] { use = measure(code); }).join();
    _exit(write(pipe, &use, sizeof(use)) == sizeof(use) ? 0 : 1);
}

} // namespace

MemoryUse measureMemory(const std::function<void()>& code) {
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    const pid_t child = fork();
    if (child == 0)
        measureAndExit(code, pipe[1]);
    close(pipe[1]);
    MemoryUse use;
    const bool isRead = child > 0 && read(pipe[0], &use, sizeof(use)) == sizeof(use);
    close(pipe[0]);
    if (child > 0)
        waitpid(child, nullptr, 0);
    if (!isRead)
        throw std::runtime_error("the process that measures memory has failed");
    return use;
}

} // namespace OrvaneBenchmarks

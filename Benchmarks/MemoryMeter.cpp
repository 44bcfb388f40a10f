#include "Benchmarks/MemoryMeter.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <new>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace {

// Plain, since what is metered runs in one thread.
bool counting = false;
std::int64_t allocations = 0;

void* allocate(std::size_t size) {
    if (counting)
        ++allocations;
    return std::malloc(size == 0 ? 1 : size);
}

// A field of /proc/self/status, in bytes.
std::int64_t memoryInUse(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(field))
            return 1024 * std::stoll(line.substr(field.size()));
    return 0;
}

} // namespace

void* operator new(std::size_t size) {
    if (void* memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace OrvaneBenchmarks {

namespace {

MemoryUse measure(const std::function<void()>& code) {
    const std::int64_t before = memoryInUse("VmRSS:");
    const std::int64_t programBefore = memoryInUse("RssFile:");
    // Resets the peak.
    std::ofstream("/proc/self/clear_refs") << "5";
    counting = true;
    code();
    counting = false;
    // What was read of the program's own files meanwhile is not the code's.
    const std::int64_t program = memoryInUse("RssFile:") - programBefore;
    return {allocations, memoryInUse("VmHWM:") - before - program};
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

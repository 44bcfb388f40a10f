#include "Tests/Support/Allocations.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <new>
#include <pthread.h>

namespace {

constexpr std::int64_t nothingFails = -2;
constexpr std::int64_t hasFailed = -1;

// While allocations are not counted, checking this flag is the only extra cost of an allocation.
std::atomic<bool> isCounting = false;
std::atomic<std::int64_t> madeCount = 0;
std::atomic<std::int64_t> releasedCount = 0;
// How many allocations precede the one that fails, and the thread, or the name of the threads, that
// make them.
std::atomic<std::int64_t> left = nothingFails;
std::atomic<const char*> failingName = nullptr;
std::atomic<pthread_t> failingThread;

bool isFailingThread() {
    const char* wanted = failingName;
    if (!wanted)
        return pthread_equal(pthread_self(), failingThread) != 0;
    std::array<char, 16> name{};
    pthread_getname_np(pthread_self(), name.data(), name.size());
    return std::strcmp(name.data(), wanted) == 0;
}

// Stops counting once below 0, so that at most one allocation fails.
bool isToFail() {
    return left >= 0 && isFailingThread() && left.fetch_sub(1) == 0;
}

void* allocate(std::size_t size) noexcept {
    const bool counts = isCounting.load(std::memory_order_relaxed);
    if (counts && isToFail())
        return nullptr;
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (counts && memory)
        ++madeCount;
    return memory;
}

void release(void* memory) noexcept {
    if (isCounting.load(std::memory_order_relaxed) && memory)
        ++releasedCount;
    std::free(memory);
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
    release(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    release(memory);
}

// The array forms are replaced too, because those of the address sanitizer do not call the
// operators above.
void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void operator delete[](void* memory) noexcept {
    release(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    release(memory);
}

Allocations::Allocations() {
    madeCount = 0;
    releasedCount = 0;
    isCounting = true;
}

Allocations::~Allocations() {
    stopFailing();
    isCounting = false;
}

void Allocations::fail(std::size_t number, const char* threadName) {
    failingName = threadName;
    failingThread = pthread_self();
    left = static_cast<std::int64_t>(number);
}

bool Allocations::stopFailing() {
    return left.exchange(nothingFails) == hasFailed;
}

std::int64_t Allocations::made() const {
    return madeCount;
}

std::int64_t Allocations::alive() const {
    return madeCount - releasedCount;
}

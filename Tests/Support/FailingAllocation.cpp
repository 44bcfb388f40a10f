#include "Tests/Support/FailingAllocation.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <pthread.h>

namespace {

constexpr std::int64_t never = -1;

// How many allocations there are before the one that fails.
thread_local std::int64_t leftHere = never;
std::atomic<std::int64_t> leftElsewhere = never;
std::atomic<const char*> nameElsewhere = nullptr;
std::atomic<std::int64_t> alive = 0;

bool isElsewhere() {
    std::array<char, 16> name{};
    pthread_getname_np(pthread_self(), name.data(), name.size());
    return std::strcmp(name.data(), nameElsewhere) == 0;
}

bool isToFail() {
    if (leftHere != never)
        return leftHere-- == 0;
    // Below 0 it counts no further, so that no more than one fails.
    return leftElsewhere >= 0 && isElsewhere() && leftElsewhere.fetch_sub(1) == 0;
}

void* allocate(std::size_t size) noexcept {
    if (isToFail())
        return nullptr;
    void* memory = std::malloc(size == 0 ? 1 : size);
    alive += memory ? 1 : 0;
    return memory;
}

void release(void* memory) noexcept {
    alive -= memory ? 1 : 0;
    std::free(memory);
}

} // namespace

void* operator new(std::size_t size) {
    if (void* memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocate(size);
}

void operator delete(void* memory) noexcept {
    release(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    release(memory);
}

void operator delete[](void* memory) noexcept {
    release(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    release(memory);
}

FailingAllocation::FailingAllocation(std::size_t number) : isHere_(true) {
    leftHere = static_cast<std::int64_t>(number);
}

FailingAllocation::FailingAllocation(std::size_t number, const char* threadName) : isHere_(false) {
    nameElsewhere = threadName;
    leftElsewhere = static_cast<std::int64_t>(number);
}

FailingAllocation::~FailingAllocation() {
    leftHere = never;
    leftElsewhere = never;
}

bool FailingAllocation::hasFailed() const {
    return isHere_ ? leftHere == never : leftElsewhere < 0;
}

std::int64_t FailingAllocation::countAlive() {
    return alive;
}

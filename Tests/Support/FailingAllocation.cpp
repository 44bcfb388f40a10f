#include "Tests/Support/FailingAllocation.h"

#include <atomic>
#include <cstdlib>
#include <limits>

namespace {

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

thread_local std::size_t allocationsToFailure = never;
std::atomic<std::int64_t> alive = 0;

void* allocate(std::size_t size) noexcept {
    // Counted down once more, 0 is `never` again.
    if (allocationsToFailure != never && allocationsToFailure-- == 0)
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

FailingAllocation::FailingAllocation(std::size_t number) {
    allocationsToFailure = number;
}

FailingAllocation::~FailingAllocation() {
    allocationsToFailure = never;
}

bool FailingAllocation::hasFailed() const {
    return allocationsToFailure == never;
}

std::int64_t FailingAllocation::countAlive() {
    return alive;
}

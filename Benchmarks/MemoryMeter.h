#pragma once

#include <cstdint>
#include <functional>

namespace OrvaneBenchmarks {

/// What a piece of code takes from the allocator.
struct MemoryUse {
    std::int64_t allocations = 0;
    /// By how much the memory that the process really uses rises at its peak.
    std::int64_t peakBytes = 0;
};

/// Runs `code` once and tells what it took. It runs in a thread of its own, as completions do, of a process of its own:
/// there it finds no gaps in the heap that earlier code has left.
MemoryUse measureMemory(const std::function<void()>& code);

} // namespace OrvaneBenchmarks

#pragma once

#include <cstdint>
#include <functional>

namespace OrvaneBenchmarks {

/// The memory that a piece of code uses.
struct MemoryUse {
    std::int64_t allocations = 0;
    /// How much the resident memory of the process grows, at its peak.
    std::int64_t peakBytes = 0;
};

/// Runs `code` once and returns the memory it used. Runs it on a separate thread, as completions
/// do, in a separate process, where earlier code has left no gaps in the heap.
MemoryUse measureMemory(const std::function<void()>& code);

} // namespace OrvaneBenchmarks

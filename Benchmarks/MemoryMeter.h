#pragma once

#include <cstdint>
#include <functional>

namespace OrvaneBenchmarks {

/// The memory that a piece of code uses.
struct MemoryUse {
    std::int64_t allocations = 0;
    /// By how much the memory that the process actually uses rises at its peak.
    std::int64_t peakBytes = 0;
};

/// Runs `code` once and returns the memory it used. Runs it on a separate thread, as completions
/// run, of a separate process, where the heap has no gaps left by earlier code.
MemoryUse measureMemory(const std::function<void()>& code);

} // namespace OrvaneBenchmarks

#pragma once

#include "Testing/ScopedState.h"

#include <cstddef>
#include <string>

// State of the test process that tests inspect and change.

/// The number of open descriptors: files, connections and the like.
std::ptrdiff_t countDescriptors();

std::ptrdiff_t countThreads();

/// Expects that `count` returns no more than `before`, possibly after a short wait: threads and
/// connections may take a moment to end.
void expectNoMore(std::ptrdiff_t (*count)(), std::ptrdiff_t before);

/// The number of bytes that the process has allocated on the heap and not released.
std::size_t heapInUse();

/// Sets an environment variable, and unsets it at the end of the scope.
Orvane::Testing::ScopedState scopedVariable(const char* name, const std::string& value);

/// Measures how much the memory of the process grows while this object exists. Measures nothing
/// under a sanitizer, which keeps freed memory.
class PeakMemory {
public:
    PeakMemory();

    /// The number of bytes in use at the peak, minus those at the start.
    std::size_t growth() const;

private:
    const std::size_t start_;
};

#pragma once

#include "Testing/ScopedState.h"

#include <cstddef>
#include <string>

// What the tests look at, and change, of the process that they run in.

/// What is open: files, connections and the like.
std::ptrdiff_t countDescriptors();

std::ptrdiff_t countThreads();

/// Waits until there are no more than before, for what may end a moment after it was told to.
void expectNoMore(std::ptrdiff_t (*count)(), std::ptrdiff_t before);

/// Bytes that the process has allocated and not released.
std::size_t heapInUse();

/// Sets a variable of the environment, until the state is restored.
Orvane::Testing::ScopedState scopedVariable(const char* name, const std::string& value);

/// How much memory the process comes to use while this lives. Under a sanitizer, which keeps freed memory, there is
/// nothing to see.
class PeakMemory {
public:
    PeakMemory();

    /// Bytes at the peak beyond those at the start.
    std::size_t growth() const;

private:
    const std::size_t start_;
};

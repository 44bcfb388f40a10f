#pragma once

#include "Testing/ScopedState.h"

#include <atomic>
#include <limits>

/// System calls that fail in the whole program while a test requests it. Works by replacing the
/// program's `poll`, `socketpair` and `pthread_create`.
namespace FailingCalls {

inline std::atomic<bool> poll = false;
inline std::atomic<bool> socketpair = false;

/// The number of threads that can still be started.
inline std::atomic<int> threadsLeft = std::numeric_limits<int>::max();

inline Orvane::Testing::ScopedState scopedThreadsLeft(int count) {
    return Orvane::Testing::ScopedState([before = threadsLeft.exchange(count)] { threadsLeft = before; });
}

} // namespace FailingCalls

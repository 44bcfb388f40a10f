#pragma once

#include "Testing/ScopedState.h"

#include <atomic>
#include <limits>

/// Calls of the system that fail, in the whole program, as long as a test says so. The program's `poll`, `socketpair`
/// and `pthread_create` are replaced for that.
namespace FailingCalls {

inline std::atomic<bool> poll = false;
inline std::atomic<bool> socketpair = false;

/// How many threads more can be started.
inline std::atomic<int> threadsLeft = std::numeric_limits<int>::max();

inline Orvane::Testing::ScopedState scopedThreadsLeft(int count) {
    return Orvane::Testing::ScopedState([before = threadsLeft.exchange(count)] { threadsLeft = before; });
}

} // namespace FailingCalls

#pragma once

#include <atomic>

/// Calls of the system that fail, in the whole program, as long as a test says so. The program's `poll` and
/// `socketpair` are replaced for that.
namespace FailingCalls {

inline std::atomic<bool> poll = false;
inline std::atomic<bool> socketpair = false;

} // namespace FailingCalls

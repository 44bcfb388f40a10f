#pragma once

#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>

namespace OrvaneHost {

/// A queue of tasks from other threads, which the main thread runs one after another.
class MainThread {
public:
    /// Thread-safe. When memory runs out, the task is dropped, and `runNext` throws
    /// `std::bad_alloc`.
    void post(std::function<void()> task) noexcept;

    /// Waits for a task and runs it. An exception from the task propagates.
    void runNext();

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::list<std::function<void()>> tasks_;
    bool hasDropped_ = false;
};

} // namespace OrvaneHost

#pragma once

#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>

namespace OrvaneHost {

/// Tasks of other threads, which the main thread runs one after the other.
class MainThread {
public:
    /// May be called from any thread. Without memory for it the task is dropped, and `runNext` throws instead.
    void post(std::function<void()> task) noexcept;

    /// Waits for a task and runs it. What it throws passes through.
    void runNext();

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::list<std::function<void()>> tasks_;
    bool hasDropped_ = false;
};

} // namespace OrvaneHost

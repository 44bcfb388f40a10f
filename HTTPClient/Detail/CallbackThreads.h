#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace Qx::Detail {

/// A small pool of threads that run tasks in the order in which they were posted.
class CallbackThreads {
public:
    struct Task {
        std::string threadName; ///< The name of the thread while it runs the task.
        std::function<void()> run;
    };

    /// A list, since splicing allocates nothing: a task that has been created can always be posted.
    using Tasks = std::list<Task>;

    explicit CallbackThreads(std::size_t count);
    CallbackThreads(const CallbackThreads&) = delete;
    CallbackThreads& operator=(const CallbackThreads&) = delete;

    /// Runs the tasks still queued and ends the threads. May be called from a task; other tasks may
    /// then run inside this call.
    ~CallbackThreads();

    /// Runs each task once on one of the threads and destroys it there. Exceptions from tasks are
    /// ignored, since no caller is left to receive them. Thread-safe; tasks may call it too.
    void post(Tasks tasks) noexcept;

private:
    struct Queue;

    void end();

    const std::shared_ptr<Queue> queue_;
    std::vector<std::thread> threads_;
};

} // namespace Qx::Detail

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

    /// A list, since it can be handed on without memory for it: what is ready can always be posted.
    using Tasks = std::list<Task>;

    explicit CallbackThreads(std::size_t count);
    CallbackThreads(const CallbackThreads&) = delete;
    CallbackThreads& operator=(const CallbackThreads&) = delete;

    /// Runs what is still posted and ends the threads. May be called from a task, within which other tasks then run.
    ~CallbackThreads();

    /// Runs each once on one of the threads and destroys it there. An exception that leaves a task ends there: there is
    /// nobody else to tell. May be called from any thread, also from a task.
    void post(Tasks tasks) noexcept;

private:
    struct Queue;

    void end();

    const std::shared_ptr<Queue> queue_;
    std::vector<std::thread> threads_;
};

} // namespace Qx::Detail

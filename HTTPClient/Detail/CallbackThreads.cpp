#include "HTTPClient/Detail/CallbackThreads.h"

#include "HTTPClient/Detail/Process.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace Qx::Detail {

namespace {

void run(CallbackThreads::Task& task) {
    nameThisThread(task.threadName);
    try {
        task.run();
    } catch (...) {
        // A completion that throws must not stop the others.
    }
    task.run = nullptr;
    nameThisThread("orvane-idle");
}

} // namespace

// Shared with the threads, since a thread that destroys the pool outlives it.
struct CallbackThreads::Queue {
    std::mutex mutex;
    std::condition_variable changed;
    Tasks tasks;
    bool closed = false;

    // The next task, or none once the queue is closed and empty.
    Tasks takeNext() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return closed || !tasks.empty(); });
        Tasks next;
        if (!tasks.empty())
            next.splice(next.end(), tasks, tasks.begin());
        return next;
    }

    void runAll() {
        for (Tasks next = takeNext(); !next.empty(); next = takeNext())
            run(next.front());
    }

    void close() {
        const std::lock_guard lock(mutex);
        closed = true;
        changed.notify_all();
    }
};

CallbackThreads::CallbackThreads(std::size_t count) : queue_(std::make_shared<Queue>()) {
    const std::size_t atLeastOne = std::max<std::size_t>(count, 1);
    threads_.reserve(atLeastOne); // So that push_back can't throw and drop a running thread.
    try {
        while (threads_.size() < atLeastOne)
            threads_.push_back(startThread([queue = queue_] { queue->runAll(); }));
    } catch (...) {
        end();
        throw;
    }
}

CallbackThreads::~CallbackThreads() {
    end();
}

void CallbackThreads::end() {
    queue_->close();
    for (std::thread& thread : threads_) {
        if (thread.get_id() != std::this_thread::get_id()) {
            thread.join();
            continue;
        }
        // Destroyed from a task: this thread can't join itself, so it runs the other tasks here.
        queue_->runAll();
        thread.detach();
    }
}

void CallbackThreads::post(Tasks tasks) noexcept {
    const std::lock_guard lock(queue_->mutex);
    queue_->tasks.splice(queue_->tasks.end(), tasks);
    queue_->changed.notify_all();
}

} // namespace Qx::Detail

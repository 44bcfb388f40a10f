#include "Host/MainThread.h"

#include <new>
#include <utility>

namespace OrvaneHost {

void MainThread::post(std::function<void()> task) noexcept {
    const std::lock_guard lock(mutex_);
    try {
        tasks_.push_back(std::move(task));
    } catch (const std::bad_alloc&) {
        hasDropped_ = true;
    }
    changed_.notify_one();
}

void MainThread::runNext() {
    std::list<std::function<void()>> next;
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return hasDropped_ || !tasks_.empty(); });
        if (hasDropped_)
            throw std::bad_alloc();
        next.splice(next.end(), tasks_, tasks_.begin());
    }
    next.front()();
}

} // namespace OrvaneHost

#include "Testing/Detail/Workers.h"

#include <exception>
#include <utility>

namespace Orvane::Testing::Detail {

Workers::Workers(std::size_t count) {
    while (threads_.size() < count)
        threads_.emplace_back([this](const std::stop_token& stop) { work(stop); });
}

Workers::~Workers() = default;

void Workers::enqueue(std::function<void()> task) {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    changed_.notify_one();
}

void Workers::shutdown() {
    for (std::jthread& thread : threads_)
        thread.request_stop();
    threads_.clear();
}

void Workers::work(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    while (changed_.wait(lock, stop, [this] { return !tasks_.empty(); })) {
        const std::function<void()> task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        try {
            task();
        } catch (const std::exception&) {
            // One connection without memory must not end the others.
        }
        lock.lock();
    }
}

} // namespace Orvane::Testing::Detail

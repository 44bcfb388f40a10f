#pragma once

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <httplib.h>
#include <list>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace Orvane::Testing::Detail {

/// The threads on which a server answers its connections. Unlike the library's own pool, it cleans up if not all of
/// them can be started.
class Workers : public httplib::TaskQueue {
public:
    /// Throws `std::system_error` if the threads can't be started.
    explicit Workers(std::size_t count);
    ~Workers() override;

    /// Runs `task` on one of the threads. What it throws ends there.
    void enqueue(std::function<void()> task) override;

    /// Runs what is queued and ends the threads.
    void shutdown() override;

private:
    void work(const std::stop_token& stop);

    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::list<std::function<void()>> tasks_;
    std::vector<std::jthread> threads_; // The last: its end waits for them.
};

} // namespace Orvane::Testing::Detail

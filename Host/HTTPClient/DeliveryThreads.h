#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace OrvaneHost {

/// A small pool of threads that run deliveries in the order in which they were posted.
class DeliveryThreads {
public:
    struct Delivery {
        std::string threadName; ///< The name that the thread bears meanwhile.
        std::function<void()> run;
    };

    /// A list, since it can be handed on without memory for it: what is ready can always be posted.
    using Deliveries = std::list<Delivery>;

    explicit DeliveryThreads(std::size_t count);
    DeliveryThreads(const DeliveryThreads&) = delete;
    DeliveryThreads& operator=(const DeliveryThreads&) = delete;

    /// Runs what is still posted and ends the threads. May be called from a delivery, within which other deliveries
    /// then run.
    ~DeliveryThreads();

    /// Runs each once on one of the threads and destroys it there. An exception that leaves a delivery ends there:
    /// there is nobody else to tell. May be called from any thread, also from a delivery.
    void post(Deliveries deliveries) noexcept;

private:
    struct Queue;

    void end();

    const std::shared_ptr<Queue> queue_;
    std::vector<std::thread> threads_;
};

} // namespace OrvaneHost

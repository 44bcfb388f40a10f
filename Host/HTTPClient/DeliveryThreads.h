#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace OrvaneHost {

/// A small pool of threads that run deliveries in the order in which they were posted.
class DeliveryThreads {
public:
    using Delivery = std::function<void()>;

    explicit DeliveryThreads(std::size_t count);
    DeliveryThreads(const DeliveryThreads&) = delete;
    DeliveryThreads& operator=(const DeliveryThreads&) = delete;

    /// Runs what is still posted and ends the threads. May be called from a delivery.
    ~DeliveryThreads();

    /// Runs `delivery` once on one of the threads, which bears the name `threadName` meanwhile, and destroys
    /// it there. An exception that leaves it ends there: there is nobody else to tell. May be called from any
    /// thread, also from a delivery.
    void post(std::string threadName, Delivery delivery);

private:
    struct Queue;

    const std::shared_ptr<Queue> queue_;
    std::vector<std::thread> threads_;
};

} // namespace OrvaneHost

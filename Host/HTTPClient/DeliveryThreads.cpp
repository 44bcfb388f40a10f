#include "Host/HTTPClient/DeliveryThreads.h"

#include "Host/HTTPClient/Platform.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace OrvaneHost {

namespace {

void deliver(DeliveryThreads::Delivery& delivery) {
    nameThisThread(delivery.threadName);
    try {
        delivery.run();
    } catch (...) {
        // A completion that throws must not take the other deliveries with it.
    }
    delivery.run = nullptr;
    nameThisThread("orvane-idle");
}

} // namespace

// Shared with the threads, since the one from which the pool is destroyed outlives it.
struct DeliveryThreads::Queue {
    std::mutex mutex;
    std::condition_variable changed;
    Deliveries deliveries;
    bool closed = false;

    // The next delivery, or none once the queue is closed and empty.
    Deliveries takeNext() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return closed || !deliveries.empty(); });
        Deliveries next;
        if (!deliveries.empty())
            next.splice(next.end(), deliveries, deliveries.begin());
        return next;
    }

    void deliverAll() {
        for (Deliveries next = takeNext(); !next.empty(); next = takeNext())
            deliver(next.front());
    }

    void close() {
        const std::lock_guard lock(mutex);
        closed = true;
        changed.notify_all();
    }
};

DeliveryThreads::DeliveryThreads(std::size_t count) : queue_(std::make_shared<Queue>()) {
    const std::size_t atLeastOne = std::max<std::size_t>(count, 1);
    threads_.reserve(atLeastOne); // A thread that runs can't be dropped.
    try {
        while (threads_.size() < atLeastOne)
            threads_.push_back(startThread([queue = queue_] { queue->deliverAll(); }));
    } catch (...) {
        end();
        throw;
    }
}

DeliveryThreads::~DeliveryThreads() {
    end();
}

void DeliveryThreads::end() {
    queue_->close();
    for (std::thread& thread : threads_) {
        if (thread.get_id() != std::this_thread::get_id()) {
            thread.join();
            continue;
        }
        // Destroyed from a delivery: this thread can't wait for itself, so it does its work here.
        queue_->deliverAll();
        thread.detach();
    }
}

void DeliveryThreads::post(Deliveries deliveries) noexcept {
    const std::lock_guard lock(queue_->mutex);
    queue_->deliveries.splice(queue_->deliveries.end(), deliveries);
    queue_->changed.notify_all();
}

} // namespace OrvaneHost

#include "Host/HTTPClient/DeliveryThreads.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <pthread.h>
#include <utility>

namespace OrvaneHost {

namespace {

struct NamedDelivery {
    std::string threadName;
    DeliveryThreads::Delivery run;
};

void nameThisThread(const std::string& name) {
    // Linux takes no more than 15 bytes.
    pthread_setname_np(pthread_self(), name.substr(0, 15).c_str());
}

void deliver(NamedDelivery delivery) {
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
    std::deque<NamedDelivery> deliveries;
    bool closed = false;

    // The next delivery, or none once the queue is closed and empty.
    std::optional<NamedDelivery> take() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return closed || !deliveries.empty(); });
        if (deliveries.empty())
            return std::nullopt;
        NamedDelivery delivery = std::move(deliveries.front());
        deliveries.pop_front();
        return delivery;
    }

    void deliverAll() {
        while (auto delivery = take())
            deliver(std::move(*delivery));
    }

    void close() {
        const std::lock_guard lock(mutex);
        closed = true;
        changed.notify_all();
    }
};

DeliveryThreads::DeliveryThreads(std::size_t count) : queue_(std::make_shared<Queue>()) {
    for (std::size_t i = 0; i < std::max<std::size_t>(count, 1); ++i)
        threads_.emplace_back([queue = queue_] { queue->deliverAll(); });
}

DeliveryThreads::~DeliveryThreads() {
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

void DeliveryThreads::post(std::string threadName, Delivery delivery) {
    const std::lock_guard lock(queue_->mutex);
    queue_->deliveries.push_back({std::move(threadName), std::move(delivery)});
    queue_->changed.notify_one();
}

} // namespace OrvaneHost

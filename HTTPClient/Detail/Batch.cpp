#include "HTTPClient/Detail/Batch.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace Qx::Detail {

// The task that an executor gets. It counts as one completion, whether run, run twice, or dropped.
class Batch::Task {
public:
    Task(std::shared_ptr<Batch> batch, std::size_t index) : batch_(std::move(batch)), index_(index) {}
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;

    ~Task() {
        try {
            if (!isTaken_.exchange(true))
                batch_->countCompletion();
        } catch (...) {
            // A destructor must not throw.
        }
    }

    void run() {
        if (!isTaken_.exchange(true))
            batch_->complete(index_);
    }

private:
    const std::shared_ptr<Batch> batch_;
    const std::size_t index_;
    std::atomic<bool> isTaken_ = false;
};

Batch::Batch(std::vector<HTTPRequest> requests, IHTTPClient::BatchCallback batchCallback,
             const CurlHTTPClientOptions& options)
    : requests_(std::move(requests)),
      responses_(requests_.size()),
      uncompleted_(completions()),
      batchCallback_(std::move(batchCallback)),
      executor_(options.executor),
      onResponse_(options.onResponse) {}

const std::vector<HTTPRequest>& Batch::requests() const {
    return requests_;
}

std::size_t Batch::completions() const {
    return std::max<std::size_t>(requests_.size(), 1);
}

void Batch::setResponse(std::size_t index, HTTPResponse response) {
    responses_[index] = std::move(response);
}

void Batch::complete(std::size_t index) {
    std::exception_ptr thrown;
    notifyObserver(index);
    try {
        if (index < requests_.size() && requests_[index].getCallback())
            requests_[index].getCallback()(responses_[index]); // NOLINT(clang-analyzer-cplusplus.Move): the last moves
    } catch (...) {
        thrown = std::current_exception();
    }
    countCompletion();
    if (thrown)
        std::rethrow_exception(thrown);
}

void Batch::notifyObserver(std::size_t index) const noexcept {
    try {
        if (index < requests_.size() && onResponse_)
            onResponse_(requests_[index], responses_[index]); // NOLINT(clang-analyzer-cplusplus.Move): the last moves
    } catch (...) {
        // The callback is called regardless.
    }
}

void Batch::countCompletion() {
    if (--uncompleted_ == 0 && batchCallback_)
        batchCallback_(std::move(responses_));
}

void Batch::completeAll() {
    std::exception_ptr firstThrown;
    for (std::size_t index = 0; index < completions(); ++index) {
        try {
            complete(index);
        } catch (...) {
            if (!firstThrown)
                firstThrown = std::current_exception();
        }
    }
    if (firstThrown)
        std::rethrow_exception(firstThrown);
}

void Batch::dispatch(const std::shared_ptr<Batch>& batch, std::size_t index) {
    if (!batch->executor_) {
        batch->complete(index);
        return;
    }
    std::shared_ptr<Task> task;
    try {
        task = std::make_shared<Task>(batch, index);
        batch->executor_([task] { task->run(); });
        return;
    } catch (...) {
        // The executor threw, or there is no memory for the task.
    }
    if (task)
        task->run();
    else
        batch->complete(index);
}

} // namespace Qx::Detail

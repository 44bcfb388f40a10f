#include "Host/ObservedHTTPClient.h"

#include <condition_variable>
#include <new>
#include <utility>

namespace OrvaneHost {

// A request or a batch, with room for its responses. Its completion owns it too, since that may outlive the client.
class ObservedHTTPClient::Exchange {
public:
    explicit Exchange(std::size_t responses) : responses_(responses) {}

    // Without memory for its reason a response is kept as one that says so. Where there is no room for it, since the
    // client did not say what it does, it is not kept.
    void keep(std::size_t index, const Qx::HTTPResponse& response) {
        const std::lock_guard lock(mutex_);
        if (index >= responses_.size())
            return;
        try {
            responses_[index] = response;
        } catch (const std::bad_alloc&) {
            responses_[index] =
                Qx::HTTPResponse::transportFailure(Qx::HTTPResponse::FailureKind::OUT_OF_MEMORY, "out of memory");
        }
    }

    void end() {
        const std::lock_guard lock(mutex_);
        isOver_ = true;
        over_.notify_all();
    }

    // For what was not sent; nothing changes if it was, and is over.
    void giveUp() {
        const std::lock_guard lock(mutex_);
        if (!isOver_)
            responses_.clear();
        isOver_ = true;
        over_.notify_all();
    }

    std::vector<Qx::HTTPResponse> takeResponses() {
        std::unique_lock lock(mutex_);
        over_.wait(lock, [this] { return isOver_; });
        return std::move(responses_);
    }

private:
    std::mutex mutex_;
    std::condition_variable over_;
    bool isOver_ = false;
    std::vector<Qx::HTTPResponse> responses_;
};

namespace {

// Runs at the end of a scope, also if an exception ends it: whoever waits for a response gets it in any case.
template <class Action>
class ScopeEnd {
public:
    explicit ScopeEnd(Action action) : action_(std::move(action)) {}
    ScopeEnd(const ScopeEnd&) = delete;
    ScopeEnd& operator=(const ScopeEnd&) = delete;
    ~ScopeEnd() { action_(); }

private:
    const Action action_;
};

} // namespace

ObservedHTTPClient::ObservedHTTPClient(std::shared_ptr<Qx::IHTTPClient> client) : client_(std::move(client)) {}

ObservedHTTPClient::~ObservedHTTPClient() = default;

void ObservedHTTPClient::queueRequest(Qx::HTTPRequest& request) {
    observe(1, [&](const std::shared_ptr<Exchange>& exchange) {
        Qx::HTTPRequest observed = request;
        observed.setCallback([exchange, callback = request.getCallback()](const Qx::HTTPResponse& response) {
            const ScopeEnd endsAlways([&] { exchange->end(); });
            exchange->keep(0, response);
            if (callback)
                callback(response);
        });
        client_->queueRequest(observed);
    });
}

void ObservedHTTPClient::whenAllRequests(std::vector<Qx::HTTPRequest>& requests, BatchCallback callback,
                                         Qx::HTTPRequest::ExecutionType executionType) {
    observe(requests.size(), [&](const std::shared_ptr<Exchange>& exchange) {
        const auto observed = [exchange, callback](std::vector<Qx::HTTPResponse> responses) {
            const ScopeEnd endsAlways([&] { exchange->end(); });
            for (std::size_t index = 0; index < responses.size(); ++index)
                exchange->keep(index, responses[index]);
            if (callback)
                callback(std::move(responses));
        };
        client_->whenAllRequests(requests, observed, executionType);
    });
}

// Sends, in an exchange whose place is made before and given up if nothing is sent.
template <class Send>
void ObservedHTTPClient::observe(std::size_t responses, Send send) {
    const auto exchange = std::make_shared<Exchange>(responses);
    {
        const std::lock_guard lock(mutex_);
        sent_.push_back(exchange);
    }
    try {
        send(exchange);
    } catch (...) {
        exchange->giveUp();
        throw;
    }
}

std::vector<Qx::HTTPResponse> ObservedHTTPClient::waitForResponses() {
    std::unique_lock lock(mutex_);
    const auto awaited = std::exchange(sent_, {});
    lock.unlock();
    std::vector<Qx::HTTPResponse> all;
    for (const auto& exchange : awaited)
        for (Qx::HTTPResponse& response : exchange->takeResponses())
            all.push_back(std::move(response));
    return all;
}

} // namespace OrvaneHost

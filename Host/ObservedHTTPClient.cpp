#include "Host/ObservedHTTPClient.h"

#include <utility>

namespace OrvaneHost {

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

ObservedHTTPClient::ObservedHTTPClient(std::unique_ptr<Qx::IHTTPClient> client) : client_(std::move(client)) {}

ObservedHTTPClient::~ObservedHTTPClient() = default;

void ObservedHTTPClient::queueRequest(Qx::HTTPRequest& request) {
    expect(1);
    Qx::HTTPRequest observed = request;
    observed.setCallback([this, callback = request.getCallback()](const Qx::HTTPResponse& response) {
        const ScopeEnd keptAlways([&] { keep({response}); });
        if (callback)
            callback(response);
    });
    client_->queueRequest(observed);
}

void ObservedHTTPClient::whenAllRequests(std::vector<Qx::HTTPRequest>& requests, BatchCallback callback,
                                         Qx::HTTPRequest::ExecutionType executionType) {
    expect(requests.size());
    const auto observed = [this, callback = std::move(callback)](std::vector<Qx::HTTPResponse> responses) {
        const ScopeEnd keptAlways([&] { keep(responses); });
        if (callback)
            callback(responses);
    };
    client_->whenAllRequests(requests, observed, executionType);
}

void ObservedHTTPClient::expect(std::size_t answers) {
    const std::lock_guard lock(mutex_);
    expected_ += answers;
}

void ObservedHTTPClient::keep(const std::vector<Qx::HTTPResponse>& responses) {
    const std::lock_guard lock(mutex_);
    responses_.insert(responses_.end(), responses.begin(), responses.end());
    answered_.notify_all();
}

std::vector<Qx::HTTPResponse> ObservedHTTPClient::waitForResponses() {
    std::unique_lock lock(mutex_);
    answered_.wait(lock, [this] { return responses_.size() >= expected_; });
    return responses_;
}

} // namespace OrvaneHost

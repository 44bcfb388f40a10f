#include "Host/ObservedHTTPClient.h"

#include <exception>
#include <utility>

namespace OrvaneHost {

using Qx::HTTPRequest;
using Qx::HTTPResponse;

namespace {

HTTPResponse take(std::future<HTTPResponse>& response) {
    try {
        return response.get();
    } catch (const std::future_error&) {
        return HTTPResponse::transportFailure(HTTPResponse::FailureKind::OUT_OF_MEMORY, "there is no response");
    }
}

} // namespace

ObservedHTTPClient::ObservedHTTPClient(std::shared_ptr<Qx::IHTTPClient> client) : client_(std::move(client)) {}

ObservedHTTPClient::~ObservedHTTPClient() = default;

void ObservedHTTPClient::queueRequest(HTTPRequest& request) {
    HTTPRequest observed = observe(request);
    client_->queueRequest(observed);
}

void ObservedHTTPClient::whenAllRequests(std::vector<HTTPRequest>& requests, BatchCallback callback,
                                         HTTPRequest::ExecutionType executionType) {
    std::vector<HTTPRequest> observed;
    for (const HTTPRequest& request : requests)
        observed.push_back(observe(request));
    client_->whenAllRequests(observed, std::move(callback), executionType);
}

// The promise ends with the callback, whatever becomes of that, so that nobody waits for good.
HTTPRequest ObservedHTTPClient::observe(const HTTPRequest& request) {
    const auto promise = std::make_shared<std::promise<HTTPResponse>>();
    HTTPRequest observed = request;
    observed.setCallback([promise, callback = request.getCallback()](const HTTPResponse& response) {
        std::exception_ptr thrown;
        try {
            if (callback)
                callback(response);
        } catch (...) {
            thrown = std::current_exception();
        }
        promise->set_value(response);
        if (thrown)
            std::rethrow_exception(thrown);
    });
    const std::lock_guard lock(mutex_);
    responses_.push_back(promise->get_future());
    return observed;
}

std::vector<HTTPResponse> ObservedHTTPClient::waitForResponses() {
    std::unique_lock lock(mutex_);
    auto awaited = std::exchange(responses_, {});
    lock.unlock();
    std::vector<HTTPResponse> responses;
    for (std::future<HTTPResponse>& response : awaited)
        responses.push_back(take(response));
    return responses;
}

} // namespace OrvaneHost

#include "Testing/PreparedHTTPClient.h"

#include "Testing/Detail/Exchange.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <fmt/format.h>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace Orvane::Testing {

namespace {

using Qx::HTTPRequest;
using Qx::HTTPResponse;

// Receives the response to a request that was sent.
using Respond = std::function<void(const HTTPResponse& response)>;

// Requests that were sent together, with the responses received so far.
class Batch {
public:
    Batch(std::vector<HTTPRequest> requests, Qx::IHTTPClient::BatchCallback callback)
        : requests_(std::move(requests)),
          responses_(requests_.size()),
          missing_(requests_.size()),
          callback_(std::move(callback)) {}

    std::size_t size() const { return requests_.size(); }
    const HTTPRequest& request(std::size_t index) const { return requests_[index]; }

    // Rethrows an exception from the request's callback only after the batch's callback, if it is
    // due, has run.
    void complete(std::size_t index, const HTTPResponse& response) {
        responses_[index] = response;
        std::exception_ptr thrown;
        try {
            if (requests_[index].getCallback())
                requests_[index].getCallback()(response);
        } catch (...) {
            thrown = std::current_exception();
        }
        if (--missing_ == 0)
            end();
        if (thrown)
            std::rethrow_exception(thrown);
    }

    void end() {
        if (callback_)
            callback_(std::move(responses_));
    }

private:
    const std::vector<HTTPRequest> requests_;
    std::vector<HTTPResponse> responses_;
    std::atomic<std::size_t> missing_;
    const Qx::IHTTPClient::BatchCallback callback_;
};

} // namespace

// Shared with the calls that are completing requests, since a callback may destroy the client.
struct PreparedHTTPClient::State {
    struct Sent {
        HTTPRequest request;
        Respond respond;
        bool isWaiting = false;
    };

    mutable std::mutex mutex;
    PreparedAnswers answers;
    bool isHolding = false;
    std::vector<Sent> sent;

    void send(const HTTPRequest& request, const Respond& respond) {
        std::unique_lock lock(mutex);
        sent.push_back({request, respond, isHolding});
        if (isHolding)
            return;
        const HTTPResponse response = answerTo(request);
        lock.unlock();
        respond(response);
    }

    // Answers the waiting request at `index`, or returns false if there is none.
    bool complete(std::size_t index, const HTTPResponse* response) {
        std::unique_lock lock(mutex);
        const auto waiting =
            std::find_if(sent.begin(), sent.end(), [&](const Sent& each) { return each.isWaiting && index-- == 0; });
        if (waiting == sent.end())
            return false;
        const HTTPResponse given = response ? *response : answerTo(waiting->request);
        waiting->isWaiting = false;
        const Respond respond = std::move(waiting->respond);
        lock.unlock();
        respond(given);
        return true;
    }

    // Must be called with `mutex` locked.
    HTTPResponse answerTo(const HTTPRequest& request) const {
        if (auto response = answers.find(request.getMethod(), request.getURL()))
            return *std::move(response);
        std::string expected;
        for (const std::string& known : answers.expectedRequests())
            expected.append(expected.empty() ? "" : ", ").append(known);
        return HTTPResponse::transportFailure(HTTPResponse::FailureKind::REFUSED,
                                              fmt::format("unexpected request {} {}; expected: {}",
                                                          Detail::nameOf(request.getMethod()), request.getURL(),
                                                          expected.empty() ? "none" : expected));
    }
};

PreparedHTTPClient::PreparedHTTPClient(PreparedAnswers answers) : state_(std::make_shared<State>()) {
    state_->answers = std::move(answers);
}

PreparedHTTPClient::PreparedHTTPClient(HTTPResponse fallback) : state_(std::make_shared<State>()) {
    state_->answers.addForAny(std::move(fallback));
}

void PreparedHTTPClient::setAnswers(PreparedAnswers answers) {
    const std::lock_guard lock(state_->mutex);
    state_->answers = std::move(answers);
}

void PreparedHTTPClient::queueRequest(HTTPRequest& request) {
    const auto state = state_;
    state->send(request, [completion = request.getCallback()](const HTTPResponse& response) {
        if (completion)
            completion(response);
    });
}

void PreparedHTTPClient::whenAllRequests(std::vector<HTTPRequest>& requests, BatchCallback callback,
                                         HTTPRequest::ExecutionType executionType) {
    const auto state = state_;
    const auto batch = std::make_shared<Batch>(requests, std::move(callback));
    if (requests.empty())
        batch->end();
    std::exception_ptr firstThrown;
    for (std::size_t index = 0; index < batch->size(); ++index) {
        HTTPRequest request = batch->request(index);
        request.executionType = executionType;
        try {
            state->send(request, [batch, index](const HTTPResponse& response) { batch->complete(index, response); });
        } catch (...) {
            if (!firstThrown)
                firstThrown = std::current_exception();
        }
    }
    if (firstThrown)
        std::rethrow_exception(firstThrown);
}

void PreparedHTTPClient::hold(bool isHolding) {
    const std::lock_guard lock(state_->mutex);
    state_->isHolding = isHolding;
}

std::size_t PreparedHTTPClient::waiting() const {
    const std::lock_guard lock(state_->mutex);
    return static_cast<std::size_t>(std::count_if(state_->sent.begin(), state_->sent.end(),
                                                  [](const State::Sent& sent) { return sent.isWaiting; }));
}

void PreparedHTTPClient::answerNext() {
    answer(0);
}

void PreparedHTTPClient::answer(std::size_t index) {
    const auto state = state_;
    if (!state->complete(index, nullptr))
        throw std::out_of_range("no such request is waiting");
}

void PreparedHTTPClient::answer(std::size_t index, const HTTPResponse& response) {
    const auto state = state_;
    if (!state->complete(index, &response))
        throw std::out_of_range("no such request is waiting");
}

void PreparedHTTPClient::answerAll() {
    const auto state = state_;
    while (state->complete(0, nullptr)) {
    }
}

void PreparedHTTPClient::cancelAll() {
    const auto state = state_;
    const auto cancelled =
        HTTPResponse::transportFailure(HTTPResponse::FailureKind::CANCELLED, "the request was cancelled");
    for (std::size_t left = waiting(); left > 0 && state->complete(0, &cancelled); --left) {
    }
}

std::vector<HTTPRequest> PreparedHTTPClient::requests() const {
    const std::lock_guard lock(state_->mutex);
    std::vector<HTTPRequest> requests;
    requests.reserve(state_->sent.size());
    for (const State::Sent& sent : state_->sent)
        requests.push_back(sent.request);
    return requests;
}

void PreparedHTTPClient::clear() {
    const std::lock_guard lock(state_->mutex);
    state_->sent.clear();
}

} // namespace Orvane::Testing

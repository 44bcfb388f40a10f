#include "Testing/PreparedHTTPClient.h"

#include "Testing/Detail/Exchange.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <fmt/format.h>
#include <memory>
#include <stdexcept>
#include <utility>

namespace Orvane::Testing {

namespace {

using Qx::HTTPRequest;
using Qx::HTTPResponse;

// The responses of a batch, as far as they have come.
class Batch {
public:
    Batch(std::size_t size, Qx::IHTTPClient::BatchCallback callback)
        : responses_(size), missing_(size), callback_(std::move(callback)) {}

    // What the callback of the last request throws comes out after that of the batch has run.
    void complete(const HTTPRequest::Callback& callback, std::size_t index, const HTTPResponse& response) {
        responses_[index] = response;
        std::exception_ptr thrown;
        try {
            if (callback)
                callback(response);
        } catch (...) {
            thrown = std::current_exception();
        }
        if (--missing_ == 0 && callback_)
            callback_(std::move(responses_));
        if (thrown)
            std::rethrow_exception(thrown);
    }

private:
    std::vector<HTTPResponse> responses_;
    std::atomic<std::size_t> missing_;
    const Qx::IHTTPClient::BatchCallback callback_;
};

} // namespace

PreparedHTTPClient::PreparedHTTPClient(PreparedAnswers answers) : answers_(std::move(answers)) {}

PreparedHTTPClient::PreparedHTTPClient(HTTPResponse forAny) {
    answers_.addForAny(std::move(forAny));
}

void PreparedHTTPClient::setAnswers(PreparedAnswers answers) {
    const std::lock_guard lock(mutex_);
    answers_ = std::move(answers);
}

void PreparedHTTPClient::queueRequest(HTTPRequest& request) {
    send(request, request.getCallback());
}

void PreparedHTTPClient::whenAllRequests(std::vector<HTTPRequest>& requests, BatchCallback callback,
                                         HTTPRequest::ExecutionType executionType) {
    if (requests.empty() && callback)
        callback({});
    const auto batch = std::make_shared<Batch>(requests.size(), std::move(callback));
    for (std::size_t index = 0; index < requests.size(); ++index) {
        HTTPRequest request = requests[index];
        request.executionType = executionType;
        send(request, [batch, completion = request.getCallback(), index](const HTTPResponse& response) {
            batch->complete(completion, index, response);
        });
    }
}

void PreparedHTTPClient::send(const HTTPRequest& request, const Respond& respond) {
    std::unique_lock lock(mutex_);
    sent_.push_back({request, respond, isHolding_});
    if (isHolding_ || !respond)
        return;
    const HTTPResponse response = answerTo(request);
    lock.unlock();
    respond(response);
}

// To be called under the lock.
HTTPResponse PreparedHTTPClient::answerTo(const HTTPRequest& request) const {
    if (auto response = answers_.find(request.getMethod(), request.getURL()))
        return *std::move(response);
    std::string expected;
    for (const std::string& known : answers_.expectedRequests())
        expected.append(expected.empty() ? "" : ", ").append(known);
    return HTTPResponse::transportFailure(HTTPResponse::FailureKind::REFUSED,
                                          fmt::format("unexpected request {} {}; expected: {}",
                                                      Detail::nameOf(request.getMethod()), request.getURL(),
                                                      expected.empty() ? "none" : expected));
}

void PreparedHTTPClient::hold(bool isHolding) {
    const std::lock_guard lock(mutex_);
    isHolding_ = isHolding;
}

std::size_t PreparedHTTPClient::waiting() const {
    const std::lock_guard lock(mutex_);
    return static_cast<std::size_t>(
        std::count_if(sent_.begin(), sent_.end(), [](const Sent& sent) { return sent.isWaiting; }));
}

// To be called under the lock.
PreparedHTTPClient::Sent& PreparedHTTPClient::waitingAt(std::size_t index) {
    for (Sent& sent : sent_)
        if (sent.isWaiting && index-- == 0)
            return sent;
    throw std::out_of_range("no such request waits");
}

void PreparedHTTPClient::answerNext() {
    answer(0);
}

void PreparedHTTPClient::answer(std::size_t index) {
    complete(index, nullptr);
}

void PreparedHTTPClient::answer(std::size_t index, const HTTPResponse& response) {
    complete(index, &response);
}

void PreparedHTTPClient::complete(std::size_t index, const HTTPResponse* response) {
    std::unique_lock lock(mutex_);
    Sent& sent = waitingAt(index);
    const HTTPResponse given = response ? *response : answerTo(sent.request);
    sent.isWaiting = false;
    const Respond respond = std::move(sent.respond);
    lock.unlock();
    // The completion may destroy this client.
    if (respond)
        respond(given);
}

void PreparedHTTPClient::answerAll() {
    while (waiting() > 0)
        answerNext();
}

std::vector<HTTPRequest> PreparedHTTPClient::requests() const {
    const std::lock_guard lock(mutex_);
    std::vector<HTTPRequest> requests;
    for (const Sent& sent : sent_)
        requests.push_back(sent.request);
    return requests;
}

void PreparedHTTPClient::clear() {
    const std::lock_guard lock(mutex_);
    sent_.clear();
}

} // namespace Orvane::Testing

#include "Host/HTTPClient/CurlHTTPClient.h"

#include "Host/HTTPClient/DeliveryThreads.h"
#include "Host/HTTPClient/Platform.h"
#include "Host/HTTPClient/TransferThread.h"

#include <atomic>
#include <exception>
#include <future>
#include <memory>
#include <utility>

namespace OrvaneHost {

namespace {

using Requests = std::vector<Qx::HTTPRequest>;
using BatchCallback = Qx::IHTTPClient::BatchCallback;

// The requests that are sent and answered together: one, or a batch.
class Group {
public:
    Group(Requests requests, BatchCallback batchCallback)
        : requests_(std::move(requests)),
          responses_(requests_.size()),
          uncompleted_(requests_.size()),
          batchCallback_(std::move(batchCallback)) {}

    const Requests& requests() const { return requests_; }

    void setResponse(std::size_t index, Qx::HTTPResponse response) { responses_[index] = std::move(response); }

    // Calls the completion of one request and, behind the last, that of the batch. What the first throws comes out
    // after the second has run, unless that throws too.
    void complete(std::size_t index) {
        std::exception_ptr thrown;
        try {
            if (const auto& callback = requests_[index].getCallback())
                callback(responses_[index]); // NOLINT(clang-analyzer-cplusplus.Move): the last one moves them
        } catch (...) {
            thrown = std::current_exception();
        }
        if (--uncompleted_ == 0)
            completeBatch();
        if (thrown)
            std::rethrow_exception(thrown);
    }

    void completeBatch() {
        if (batchCallback_)
            batchCallback_(std::move(responses_));
    }

private:
    const Requests requests_;
    std::vector<Qx::HTTPResponse> responses_;
    std::atomic<std::size_t> uncompleted_;
    const BatchCallback batchCallback_;
};

void completeAll(Group& group) {
    if (group.requests().empty()) {
        group.completeBatch();
        return;
    }
    std::exception_ptr firstThrown;
    for (std::size_t index = 0; index < group.requests().size(); ++index) {
        try {
            group.complete(index);
        } catch (...) {
            if (!firstThrown)
                firstThrown = std::current_exception();
        }
    }
    if (firstThrown)
        std::rethrow_exception(firstThrown);
}

void refuseInChild(Group& group) {
    for (std::size_t index = 0; index < group.requests().size(); ++index)
        group.setResponse(index, Qx::HTTPResponse::transportFailure(
                                     Qx::HTTPResponse::FailureKind::CLOSED,
                                     "the HTTP client belongs to the process that forked this one; make another"));
}

void waitForResponses(Group& group, TransferThread& transfers) {
    std::vector<std::future<Qx::HTTPResponse>> responses;
    std::vector<TransferThread::Answered> answered;
    for (std::size_t index = 0; index < group.requests().size(); ++index) {
        const auto promise = std::make_shared<std::promise<Qx::HTTPResponse>>();
        responses.push_back(promise->get_future());
        answered.emplace_back([promise](Qx::HTTPResponse response) { promise->set_value(std::move(response)); });
    }
    transfers.submit(group.requests(), std::move(answered));
    for (std::size_t index = 0; index < responses.size(); ++index)
        group.setResponse(index, responses[index].get());
}

void answerOnDeliveryThreads(const std::shared_ptr<Group>& group, TransferThread& transfers,
                             DeliveryThreads& deliveries) {
    if (group->requests().empty()) {
        deliveries.post({{"batch", [group] { group->completeBatch(); }}});
        return;
    }
    std::vector<TransferThread::Answered> answered;
    for (std::size_t index = 0; index < group->requests().size(); ++index) {
        // The delivery is made here, where there is somebody to tell if there is no memory for it.
        DeliveryThreads::Deliveries delivery{
            {group->requests()[index].getThreadName(), [group, index] { group->complete(index); }}};
        // It takes the group along, so that callbacks are destroyed where they have run: the last of them may drop the
        // client, which the transfer thread can't end.
        answered.emplace_back([group = group.get(), index, &deliveries,
                               delivery = std::move(delivery)](Qx::HTTPResponse response) mutable {
            group->setResponse(index, std::move(response));
            deliveries.post(std::move(delivery));
        });
    }
    transfers.submit(group->requests(), std::move(answered));
}

} // namespace

// In this order: the last deliveries run while the transfers, though closed, can still be asked for more.
struct CurlHTTPClient::Threads {
    explicit Threads(const CurlHTTPClientSettings& settings)
        : transfers(settings), deliveries(settings.deliveryThreads) {}

    TransferThread transfers;
    DeliveryThreads deliveries;
};

CurlHTTPClient::CurlHTTPClient(const CurlHTTPClientSettings& settings)
    : processId_(processId()), threads_(std::make_unique<Threads>(settings)) {}

CurlHTTPClient::~CurlHTTPClient() {
    if (belongsToParentProcess())
        static_cast<void>(threads_.release()); // None of them runs here, so none can be ended.
    else
        threads_->transfers.close();
}

bool CurlHTTPClient::belongsToParentProcess() const {
    return processId() != processId_;
}

void CurlHTTPClient::queueRequest(Qx::HTTPRequest& request) {
    send({request}, nullptr, request.executionType);
}

void CurlHTTPClient::whenAllRequests(Requests& requests, BatchCallback callback,
                                     Qx::HTTPRequest::ExecutionType executionType) {
    send(requests, std::move(callback), executionType);
}

void CurlHTTPClient::send(Requests requests, BatchCallback callback, Qx::HTTPRequest::ExecutionType executionType) {
    const auto group = std::make_shared<Group>(std::move(requests), std::move(callback));
    const bool isInChild = belongsToParentProcess();
    if (!isInChild && executionType == Qx::HTTPRequest::ExecutionType::CLIENT_THREAD) {
        answerOnDeliveryThreads(group, threads_->transfers, threads_->deliveries);
        return;
    }
    if (isInChild)
        refuseInChild(*group);
    else
        waitForResponses(*group, threads_->transfers);
    // From here on the client is not touched: a completion may have destroyed it.
    completeAll(*group);
}

} // namespace OrvaneHost

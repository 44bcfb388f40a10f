#include "HTTPClient/CurlHTTPClient.h"

#include "HTTPClient/Detail/Batch.h"
#include "HTTPClient/Detail/CallbackThreads.h"
#include "HTTPClient/Detail/Process.h"
#include "HTTPClient/Detail/Session.h"
#include "HTTPClient/Detail/TokenThread.h"
#include "HTTPClient/Detail/TransferThread.h"

#include <future>
#include <memory>
#include <utility>

namespace Qx {

using Detail::Batch;
using Detail::CallbackThreads;
using Detail::Session;
using Detail::TransferThread;

namespace {

void refuseInChild(Batch& batch) {
    for (std::size_t index = 0; index < batch.requests().size(); ++index)
        batch.setResponse(index, HTTPResponse::transportFailure(
                                     HTTPResponse::FailureKind::CLOSED,
                                     "the HTTP client belongs to the process that forked this one; create another"));
}

void waitForResponses(Batch& batch, Session& session, TransferThread& transfers) {
    std::vector<std::future<HTTPResponse>> responses;
    std::vector<TransferThread::ResponseHandler> handlers;
    for (std::size_t index = 0; index < batch.requests().size(); ++index) {
        const auto promise = std::make_shared<std::promise<HTTPResponse>>();
        responses.push_back(promise->get_future());
        handlers.emplace_back([promise](HTTPResponse response) { promise->set_value(std::move(response)); });
    }
    transfers.submit(session, batch.requests(), std::move(handlers));
    for (std::size_t index = 0; index < responses.size(); ++index)
        batch.setResponse(index, responses[index].get());
}

void completeOnCallbackThreads(const std::shared_ptr<Batch>& batch, Session& session, TransferThread& transfers,
                               CallbackThreads& callbacks) {
    if (batch->requests().empty()) {
        callbacks.post({{"batch", [batch] { Batch::dispatch(batch, 0); }}});
        return;
    }
    std::vector<TransferThread::ResponseHandler> handlers;
    for (std::size_t index = 0; index < batch->requests().size(); ++index) {
        // The task is created here, where std::bad_alloc can still reach the caller.
        CallbackThreads::Tasks task{
            {batch->requests()[index].getThreadName(), [batch, index] { Batch::dispatch(batch, index); }}};
        // The task owns the batch, so that the callbacks are destroyed on the thread that ran them:
        // the last of them may destroy the client, which the transfer thread must not do.
        handlers.emplace_back(
            [batch = batch.get(), index, &callbacks, task = std::move(task)](HTTPResponse response) mutable {
                batch->setResponse(index, std::move(response));
                callbacks.post(std::move(task));
            });
    }
    transfers.submit(session, batch->requests(), std::move(handlers));
}

} // namespace

// The order matters: while `callbacks` is destroyed, the last completions run and may still send
// requests to the session, though it is closed.
struct CurlHTTPClient::State {
    explicit State(const CurlHTTPClientOptions& options)
        : session(options),
          cache(options.connectionCache ? options.connectionCache
                                        : std::make_shared<CurlConnectionCache>(options.maxConnections)),
          transfers(*cache->transfers_),
          callbacks(options.callbackThreads),
          tokens(session, transfers) {
        try {
            cache->require(options); // Last: it is permanent, so nothing may fail after it.
        } catch (...) {
            transfers.close(session); // So that the token thread ends.
            throw;
        }
    }

    Session session;
    const std::shared_ptr<CurlConnectionCache> cache;
    TransferThread& transfers;
    CallbackThreads callbacks;
    Detail::TokenThread tokens;
};

CurlHTTPClient::CurlHTTPClient(const CurlHTTPClientOptions& options)
    : processId_(Detail::processId()), state_(std::make_unique<State>(options)) {}

CurlHTTPClient::~CurlHTTPClient() {
    if (belongsToParentProcess())
        static_cast<void>(state_.release()); // There are no threads to join here.
    else
        state_->transfers.close(state_->session);
}

bool CurlHTTPClient::belongsToParentProcess() const {
    return Detail::processId() != processId_;
}

void CurlHTTPClient::cancelAll() {
    if (!belongsToParentProcess())
        state_->transfers.cancel(state_->session);
}

void CurlHTTPClient::queueRequest(HTTPRequest& request) {
    send({request}, nullptr, request.executionType);
}

void CurlHTTPClient::whenAllRequests(std::vector<HTTPRequest>& requests, BatchCallback callback,
                                     HTTPRequest::ExecutionType executionType) {
    send(requests, std::move(callback), executionType);
}

void CurlHTTPClient::send(std::vector<HTTPRequest> requests, BatchCallback callback,
                          HTTPRequest::ExecutionType executionType) {
    const auto batch =
        std::make_shared<Batch>(std::move(requests), std::move(callback), state_->session.rules.options());
    const bool isInChild = belongsToParentProcess();
    if (!isInChild && executionType == HTTPRequest::ExecutionType::CLIENT_THREAD) {
        completeOnCallbackThreads(batch, state_->session, state_->transfers, state_->callbacks);
        return;
    }
    if (isInChild)
        refuseInChild(*batch);
    else
        waitForResponses(*batch, state_->session, state_->transfers);
    // Do not touch the client from here on: a completion may destroy it.
    batch->completeAll();
}

} // namespace Qx

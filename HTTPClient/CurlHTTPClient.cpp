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
        // The task is made here, where there is somebody to tell if there is no memory for it.
        CallbackThreads::Tasks task{
            {batch->requests()[index].getThreadName(), [batch, index] { Batch::dispatch(batch, index); }}};
        // It takes the batch along, so that callbacks are destroyed where they have run: the last of them may drop the
        // client, which the transfer thread can't end.
        handlers.emplace_back(
            [batch = batch.get(), index, &callbacks, task = std::move(task)](HTTPResponse response) mutable {
                batch->setResponse(index, std::move(response));
                callbacks.post(std::move(task));
            });
    }
    transfers.submit(session, batch->requests(), std::move(handlers));
}

} // namespace

// In this order: the last completions run while the session, though closed, can still be asked for more.
struct CurlHTTPClient::State {
    explicit State(const CurlHTTPClientOptions& options)
        : session(options),
          cache(options.connectionCache ? options.connectionCache
                                        : std::make_shared<CurlConnectionCache>(options.maxConnections)),
          transfers(*cache->transfers_),
          callbacks(options.callbackThreads),
          tokens(session, transfers) {
        try {
            cache->require(options); // The last, since it lasts: a client that is not made makes no connections.
        } catch (...) {
            transfers.close(session); // The thread for tokens waits for that.
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
        static_cast<void>(state_.release()); // None of its threads runs here, so none can be ended.
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
    // From here on the client is not touched: a completion may have destroyed it.
    batch->completeAll();
}

} // namespace Qx

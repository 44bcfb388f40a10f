#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"
#include "Base/QxBase10/IHTTPClient.h"
#include "HTTPClient/CurlHTTPClientOptions.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace Qx::Detail {

/// Requests that are sent and completed together: a single request, or a batch, which may be empty.
class Batch {
public:
    Batch(std::vector<HTTPRequest> requests, IHTTPClient::BatchCallback batchCallback,
          const CurlHTTPClientOptions& options);

    const std::vector<HTTPRequest>& requests() const;

    /// Returns the number of completions: one for each request, or one for an empty batch.
    std::size_t completions() const;

    void setResponse(std::size_t index, HTTPResponse response);

    /// Calls the callback of one request and, after the last request, that of the batch. An
    /// exception from the first is rethrown after the second has run, unless that throws too.
    void complete(std::size_t index);

    /// Completes all requests on the calling thread. Rethrows the first exception after all
    /// completions have run.
    void completeAll();

    /// Completes a request through the executor, or directly if there is none or it throws.
    static void dispatch(const std::shared_ptr<Batch>& batch, std::size_t index);

private:
    class Task;

    void notifyObserver(std::size_t index) const noexcept;
    void countCompletion();

    const std::vector<HTTPRequest> requests_;
    std::vector<HTTPResponse> responses_;
    std::atomic<std::size_t> uncompleted_;
    const IHTTPClient::BatchCallback batchCallback_;
    const decltype(CurlHTTPClientOptions::executor) executor_;
    const decltype(CurlHTTPClientOptions::onResponse) onResponse_;
};

} // namespace Qx::Detail

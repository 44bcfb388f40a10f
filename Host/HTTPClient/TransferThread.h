#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"
#include "Host/HTTPClient/CurlHTTPClientSettings.h"

#include <functional>
#include <memory>
#include <vector>

namespace OrvaneHost {

/// Runs HTTP transfers side by side on one thread of its own, over connections that are kept for reuse.
class TransferThread {
public:
    /// Called once, on the transfer thread or in `submit`, which has the thread wait meanwhile. It must be quick and
    /// not throw, nor call this object. It may let the whole be destroyed elsewhere before `submit` has returned.
    using Answered = std::function<void(Qx::HTTPResponse response)>;

    /// Throws `std::invalid_argument` with one line if a setting makes no sense, `std::system_error` if the system has
    /// no thread or no descriptors for it, and `std::bad_alloc`.
    explicit TransferThread(CurlHTTPClientSettings settings);
    TransferThread(const TransferThread&) = delete;
    TransferThread& operator=(const TransferThread&) = delete;

    ~TransferThread();

    /// Answers what is in flight or waiting with a transport failure and ends the thread. What is submitted
    /// from then on is answered so at once. The destructor closes too; call it no more than once at a time.
    void close();

    /// Sends each request as soon as there is a connection for it, and calls the function of the same place in
    /// `answered` with its answer. Of a request it takes all but the callback and the thread name. A request that may
    /// not be sent is answered before `submit` returns. If an exception comes out, nothing has been sent and nothing
    /// will be answered. May be called from any thread.
    void submit(const std::vector<Qx::HTTPRequest>& requests, std::vector<Answered> answered);

private:
    class Loop;

    const std::unique_ptr<Loop> loop_;
};

} // namespace OrvaneHost

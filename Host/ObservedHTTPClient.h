#pragma once

#include "Base/QxBase10/IHTTPClient.h"

#include <future>
#include <memory>
#include <mutex>
#include <vector>

namespace OrvaneHost {

/// Passes requests on to another client and keeps their responses. The library tells its callers only that a
/// request failed; whoever has to tell a user why looks here.
class ObservedHTTPClient : public Qx::IHTTPClient {
public:
    explicit ObservedHTTPClient(std::shared_ptr<Qx::IHTTPClient> client);
    ~ObservedHTTPClient() override;

    void queueRequest(Qx::HTTPRequest& request) override;
    void whenAllRequests(std::vector<Qx::HTTPRequest>& requests, BatchCallback callback,
                         Qx::HTTPRequest::ExecutionType executionType) override;

    /// Waits until each request sent so far is answered and its callback has returned, and returns the responses in the
    /// order of the requests. One that was not sent, or whose response could not be kept, has a failure in its place.
    /// The next call waits for what has been sent since. Do not call it in a completion, which would wait for itself.
    std::vector<Qx::HTTPResponse> waitForResponses();

private:
    Qx::HTTPRequest observe(const Qx::HTTPRequest& request);

    std::mutex mutex_;
    std::vector<std::future<Qx::HTTPResponse>> responses_;
    const std::shared_ptr<Qx::IHTTPClient> client_; // The last: what completions send while it ends uses the others.
};

} // namespace OrvaneHost

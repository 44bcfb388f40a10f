#pragma once

#include "Base/QxBase10/IHTTPClient.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

namespace OrvaneHost {

/// Passes requests on to another client and keeps their responses. The library tells its callers only that a
/// request failed; whoever has to tell a user why looks here. A completion may destroy it if it may destroy that
/// client.
class ObservedHTTPClient : public Qx::IHTTPClient {
public:
    explicit ObservedHTTPClient(std::shared_ptr<Qx::IHTTPClient> client);

    ~ObservedHTTPClient() override;

    void queueRequest(Qx::HTTPRequest& request) override;
    void whenAllRequests(std::vector<Qx::HTTPRequest>& requests, BatchCallback callback,
                         Qx::HTTPRequest::ExecutionType executionType) override;

    /// Waits until every request and every batch sent so far is answered and its callbacks have returned, and
    /// hands over the responses, in the order in which the requests were sent. The next call waits for and hands over
    /// what has been sent since. What the client did not send, but threw, has no response. Do not call it in a
    /// completion, which would wait for itself, nor in a forked child.
    std::vector<Qx::HTTPResponse> waitForResponses();

private:
    class Exchange;

    template <class Send>
    void observe(std::size_t responses, Send send);

    std::mutex mutex_;
    std::vector<std::shared_ptr<Exchange>> sent_;
    const std::shared_ptr<Qx::IHTTPClient>
        client_; // The last: what its completions queue while it ends uses the others.
};

} // namespace OrvaneHost

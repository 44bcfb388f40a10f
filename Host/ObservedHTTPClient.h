#pragma once

#include "Base/QxBase10/IHTTPClient.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

namespace OrvaneHost {

/// Passes requests on to another client and keeps their responses. The library tells its callers only that a
/// request failed; whoever has to tell a user why looks here.
class ObservedHTTPClient : public Qx::IHTTPClient {
public:
    explicit ObservedHTTPClient(std::unique_ptr<Qx::IHTTPClient> client);

    ~ObservedHTTPClient() override;

    void queueRequest(Qx::HTTPRequest& request) override;
    void whenAllRequests(std::vector<Qx::HTTPRequest>& requests, BatchCallback callback,
                         Qx::HTTPRequest::ExecutionType executionType) override;

    /// Waits until every request and every batch sent so far is answered and its callbacks have returned, and
    /// gives the responses: those of a batch in the order of its requests.
    std::vector<Qx::HTTPResponse> waitForResponses();

private:
    void expect(std::size_t answers);
    void keep(const std::vector<Qx::HTTPResponse>& responses);

    std::mutex mutex_;
    std::condition_variable answered_;
    std::size_t expected_ = 0;
    std::vector<Qx::HTTPResponse> responses_;
    const std::unique_ptr<Qx::IHTTPClient> client_; // The last: its completions use the others until it has ended.
};

} // namespace OrvaneHost

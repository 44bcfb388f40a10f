#pragma once

#include "Base/QxBase10/IHTTPClient.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Keeps what it is given; the test decides when it is answered, and with what. With a response of its own it answers
/// each request at once instead, in the calling thread.
class FakeHTTPClient : public Qx::IHTTPClient {
public:
    FakeHTTPClient() = default;
    explicit FakeHTTPClient(Qx::HTTPResponse response) : response_(std::move(response)) {}

    void queueRequest(Qx::HTTPRequest& request) override {
        if (response_)
            request.getCallback()(*response_);
        else
            queued.push_back(request);
    }

    void whenAllRequests(std::vector<Qx::HTTPRequest>& requests, BatchCallback callback,
                         Qx::HTTPRequest::ExecutionType executionType) override {
        batch = requests;
        batchCallback = std::move(callback);
        batchExecutionType = executionType;
    }

    /// Answers the last request that was queued.
    void answer(int status, std::string body) const {
        const Qx::HTTPRequest request = queued.back(); // The callback may queue another.
        request.getCallback()(Qx::HTTPResponse(status, std::move(body)));
    }

    std::vector<Qx::HTTPRequest> queued;
    std::vector<Qx::HTTPRequest> batch;
    BatchCallback batchCallback;
    Qx::HTTPRequest::ExecutionType batchExecutionType = Qx::HTTPRequest::ExecutionType::CALLING_THREAD;

private:
    const std::optional<Qx::HTTPResponse> response_;
};

#pragma once

#include "Base/QxBase10/IHTTPClient.h"

#include <string>
#include <utility>

/// Answers every request at once, in the calling thread, with one body.
class AnsweringClient : public Qx::IHTTPClient {
public:
    explicit AnsweringClient(std::string body) : response_(200, std::move(body)) {}

    void queueRequest(Qx::HTTPRequest& request) override { request.getCallback()(response_); }

    void whenAllRequests(std::vector<Qx::HTTPRequest>& requests, BatchCallback callback,
                         Qx::HTTPRequest::ExecutionType) override {
        for (Qx::HTTPRequest& request : requests)
            queueRequest(request);
        callback({requests.size(), response_});
    }

private:
    const Qx::HTTPResponse response_;
};

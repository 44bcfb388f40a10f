#pragma once

#include "Base/QxBase10/IHTTPClient.h"
#include "Testing/PreparedAnswers.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Orvane::Testing {

/// An HTTP client that sends nothing and returns prepared answers, at once or when the test
/// releases them.
///
/// A request for which there is no answer completes with a failure of kind `REFUSED`, whose reason
/// lists the requests that were expected. All callbacks run in the thread that sends the request or
/// releases its answer, regardless of the request's `executionType`, so that tests are
/// deterministic. The client may be used from several threads at once, and a callback may destroy
/// it.
class PreparedHTTPClient : public Qx::IHTTPClient {
public:
    /// Without answers, every request fails as unexpected, unless the test holds it and answers it
    /// itself.
    explicit PreparedHTTPClient(PreparedAnswers answers = {});

    /// Answers every request with `fallback`.
    explicit PreparedHTTPClient(Qx::HTTPResponse fallback);

    void queueRequest(Qx::HTTPRequest& request) override;
    void whenAllRequests(std::vector<Qx::HTTPRequest>& requests, BatchCallback callback,
                         Qx::HTTPRequest::ExecutionType executionType) override;

    /// Replaces the answers to all requests that are sent or released from now on.
    void setAnswers(PreparedAnswers answers);

    /// Sets whether requests sent from now on wait, instead of being answered at once.
    void hold(bool isHolding = true);

    /// Returns the number of waiting requests.
    std::size_t waiting() const;

    /// Answers the request that has waited longest with its prepared answer. Exceptions from its
    /// callback propagate. Throws `std::out_of_range` if no request is waiting.
    void answerNext();

    /// Answers the request at `index` among the waiting ones, in the same way.
    void answer(std::size_t index);

    /// Answers the request at `index` with `response`, in the same way.
    void answer(std::size_t index, const Qx::HTTPResponse& response);

    /// Answers all waiting requests, in order, including those that callbacks send in the meantime.
    void answerAll();

    /// Completes all waiting requests with a failure of kind `CANCELLED`, as
    /// `Qx::CurlHTTPClient::cancelAll` does.
    void cancelAll();

    /// Returns all requests sent so far, in order.
    std::vector<Qx::HTTPRequest> requests() const;

    /// Forgets all requests. Those that are waiting will never be answered.
    void clear();

private:
    struct State;

    const std::shared_ptr<State> state_;
};

} // namespace Orvane::Testing

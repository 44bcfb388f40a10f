#pragma once

#include "Base/QxBase10/IHTTPClient.h"
#include "Testing/PreparedAnswers.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Orvane::Testing {

/// An HTTP client that sends nothing and gives prepared answers, at once or when the test lets it.
///
/// A request for which there is no answer completes with a failure of kind `REFUSED`, whose reason lists what was
/// expected. All completions run in the thread that sends the request or lets its answer go, whatever its execution
/// type says, so that a test is deterministic. It may be used from several threads at once, and a completion may
/// destroy it.
class PreparedHTTPClient : public Qx::IHTTPClient {
public:
    /// Without answers every request is unexpected, unless the test holds it and answers it itself.
    explicit PreparedHTTPClient(PreparedAnswers answers = {});

    /// Answers every request with that response.
    explicit PreparedHTTPClient(Qx::HTTPResponse forAny);

    void queueRequest(Qx::HTTPRequest& request) override;
    void whenAllRequests(std::vector<Qx::HTTPRequest>& requests, BatchCallback callback,
                         Qx::HTTPRequest::ExecutionType executionType) override;

    /// Replaces the answers to requests that come, or are let go, from now on.
    void setAnswers(PreparedAnswers answers);

    /// Whether requests wait from now on, instead of being answered at once.
    void hold(bool isHolding = true);

    /// How many wait.
    std::size_t waiting() const;

    /// Answers the request that has waited longest, the one at `index` among those that wait, or one with a response of
    /// the test's own. What a completion throws comes out. Throws `std::out_of_range` if there is none.
    void answerNext();
    void answer(std::size_t index);
    void answer(std::size_t index, const Qx::HTTPResponse& response);

    /// Answers all that wait, in order, those included that completions send meanwhile.
    void answerAll();

    /// Completes all that wait with a failure of kind `CANCELLED`, as `Qx::CurlHTTPClient::cancelAll` does.
    void cancelAll();

    /// All requests so far, in order.
    std::vector<Qx::HTTPRequest> requests() const;

    /// Forgets all requests. Those that wait are never answered.
    void clear();

private:
    struct State;

    const std::shared_ptr<State> state_;
};

} // namespace Orvane::Testing

#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Qx::Detail {

struct Session;
class TransferError;

/// Runs the HTTP transfers of any number of sessions side by side on one dedicated thread, over
/// connections that are kept for reuse. Thread-safe.
class TransferThread {
public:
    /// Called once: on the transfer thread, in `submit` while the transfer thread is locked out, or
    /// in the functions that answer token questions. Must be quick, and must neither throw nor call
    /// this object. It may cause another thread to close the session before `submit` has returned.
    using ResponseHandler = std::function<void(HTTPResponse response)>;

    /// Throws `std::system_error` if the thread can't be started or the process has no file
    /// descriptors left, and `std::bad_alloc` when memory runs out.
    explicit TransferThread(std::size_t maxConnections);
    TransferThread(const TransferThread&) = delete;
    TransferThread& operator=(const TransferThread&) = delete;

    /// Call once all sessions are closed.
    ~TransferThread();

    /// Sends each request as soon as a connection is available, and calls the handler of the same
    /// index with its response. Uses only the URL, method, headers and authentication of each
    /// request. A request that may not be sent is responded to before `submit` returns. If an
    /// exception is thrown, nothing was sent and no handler is called.
    void submit(Session& session, const std::vector<HTTPRequest>& requests, std::vector<ResponseHandler> handlers);

    /// Responds to everything submitted so far with a failure, as soon as possible.
    void cancel(Session& session);

    /// Cancels everything, makes later submissions fail, and returns once the session has no
    /// transfers left.
    void close(Session& session);

    /// A question for a session's token source.
    struct TokenQuestion {
        std::string refusedToken;   ///< Empty for any token.
        std::uint64_t askedFor = 0; ///< The transfers up to this number share the answer.
    };

    /// Waits until a transfer of the session needs a token. Returns nothing once the session is
    /// closed.
    std::optional<TokenQuestion> nextTokenQuestion(Session& session);

    /// Passes on the token that the source returned, or the reason why it returned none.
    void answerTokenQuestion(Session& session, const TokenQuestion& question, const std::string& token) noexcept;
    void answerTokenQuestion(Session& session, const TokenQuestion& question, const TransferError& error) noexcept;

    /// Call instead when memory runs out for a question or its answer.
    void failTokenQuestion(Session& session) noexcept;

private:
    class Loop;

    const std::unique_ptr<Loop> loop_;
};

} // namespace Qx::Detail

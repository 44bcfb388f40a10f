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

/// Runs the HTTP transfers of any number of sessions side by side on one thread of its own, over connections that are
/// kept for reuse. May be used from several threads at once.
class TransferThread {
public:
    /// Called once, on the transfer thread or in `submit`, which makes the thread wait meanwhile. It must be quick and
    /// not throw, nor call this object. It may let the session be closed elsewhere before `submit` has returned.
    using ResponseHandler = std::function<void(HTTPResponse response)>;

    /// Throws `std::system_error` if the system has no thread or no descriptors for it, and `std::bad_alloc`.
    explicit TransferThread(std::size_t maxConnections);
    TransferThread(const TransferThread&) = delete;
    TransferThread& operator=(const TransferThread&) = delete;

    /// To be called when all sessions are closed.
    ~TransferThread();

    /// Sends each request as soon as there is a connection for it, and calls the handler of the same index with its
    /// response. Of a request it takes all but the callback and the thread name. A request that may not be sent is
    /// responded to before `submit` returns. If an exception is thrown, nothing was sent and no handler is called.
    void submit(Session& session, const std::vector<HTTPRequest>& requests, std::vector<ResponseHandler> handlers);

    /// Responds to what was submitted before with a failure, as soon as possible.
    void cancel(Session& session);

    /// Cancels, returns when there is nothing left of the session, and lets what is submitted from then on fail.
    void close(Session& session);

    /// What a session's token source is to be asked.
    struct TokenQuestion {
        std::string refusedToken;   ///< Empty for any token.
        std::uint64_t askedFor = 0; ///< The transfers up to this number share the answer.
    };

    /// Waits until a transfer of the session needs a token; returns nothing once the session is closed.
    std::optional<TokenQuestion> nextTokenQuestion(Session& session);

    /// Hands out what the source has returned, or why it has returned nothing.
    void answerTokenQuestion(Session& session, const TokenQuestion& question, const std::string& token) noexcept;
    void answerTokenQuestion(Session& session, const TokenQuestion& question, const TransferError& error) noexcept;

    /// To be called instead if there is no memory for a question or its answer.
    void failTokenQuestion(Session& session) noexcept;

private:
    class Loop;

    const std::unique_ptr<Loop> loop_;
};

} // namespace Qx::Detail

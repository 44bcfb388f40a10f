#pragma once

#include <thread>

namespace Qx::Detail {

struct Session;
class TransferThread;

/// Asks the token source of a session on a thread of its own, as long as the session is open. Without a source there is
/// no thread.
class TokenThread {
public:
    /// Both have to outlive it. Throws `std::system_error` if there is no thread for it.
    TokenThread(Session& session, TransferThread& transfers);
    TokenThread(const TokenThread&) = delete;
    TokenThread& operator=(const TokenThread&) = delete;

    /// To be called when the session is closed; waits for the source.
    ~TokenThread();

private:
    std::thread thread_;
};

} // namespace Qx::Detail

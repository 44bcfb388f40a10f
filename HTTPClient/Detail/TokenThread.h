#pragma once

#include <thread>

namespace Qx::Detail {

struct Session;
class TransferThread;

/// Calls a session's token source on a dedicated thread for as long as the session is open. Without
/// a source, no thread is started.
class TokenThread {
public:
    /// Both must outlive this object. Throws `std::system_error` if the thread can't be started.
    TokenThread(Session& session, TransferThread& transfers);
    TokenThread(const TokenThread&) = delete;
    TokenThread& operator=(const TokenThread&) = delete;

    /// Call once the session is closed. Waits until the token source has returned.
    ~TokenThread();

private:
    std::thread thread_;
};

} // namespace Qx::Detail

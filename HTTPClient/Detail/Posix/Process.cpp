#include "HTTPClient/Detail/Process.h"

#include <csignal>
#include <initializer_list>
#include <unistd.h>
#include <utility>

namespace Qx::Detail {

namespace {

// While it exists, blocks all signals in the calling thread, except those raised by the thread's
// own faults. A new thread inherits the mask.
class BlockedSignals {
public:
    BlockedSignals() {
        sigset_t others;
        sigfillset(&others);
        for (const int ownFault : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV, SIGSYS, SIGTRAP})
            sigdelset(&others, ownFault);
        pthread_sigmask(SIG_BLOCK, &others, &before_);
    }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_{};
};

} // namespace

std::thread startThread(std::function<void()> run) {
    const BlockedSignals blocked;
    return std::thread(std::move(run));
}

long processId() {
    return getpid();
}

} // namespace Qx::Detail

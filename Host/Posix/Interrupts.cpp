#include "Host/Interrupts.h"

#include <csignal>
#include <initializer_list>

namespace OrvaneHost {

namespace {

// All except those that are ignored, as under nohup: once blocked, these too would end the wait.
sigset_t interruptsToWaitFor() {
    sigset_t interrupts;
    sigemptyset(&interrupts);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
        struct sigaction present {};
        sigaction(signal, nullptr, &present);
        if (present.sa_handler != SIG_IGN)
            sigaddset(&interrupts, signal);
    }
    return interrupts;
}

} // namespace

void holdInterrupts() {
    const sigset_t interrupts = interruptsToWaitFor();
    pthread_sigmask(SIG_BLOCK, &interrupts, nullptr);
}

void waitForInterrupt() {
    const sigset_t interrupts = interruptsToWaitFor();
    int received = 0;
    sigwait(&interrupts, &received);
    pthread_sigmask(SIG_UNBLOCK, &interrupts, nullptr);
}

} // namespace OrvaneHost

#pragma once

namespace OrvaneHost {

/// Holds the user's interrupts for `waitForInterrupt`. Call before other threads start, so that
/// none of them receives the interrupts.
void holdInterrupts();

/// Returns once the user interrupts the program or ends the session. A second interrupt ends the
/// program at once.
void waitForInterrupt();

} // namespace OrvaneHost

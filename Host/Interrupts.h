#pragma once

namespace OrvaneHost {

/// Holds back the user's interrupts until `waitForInterrupt`. Call this before other threads start,
/// so that none of them receives the interrupts.
void holdInterrupts();

/// Returns once the user interrupts the program or ends the session. A second interrupt ends the
/// program at once.
void waitForInterrupt();

} // namespace OrvaneHost

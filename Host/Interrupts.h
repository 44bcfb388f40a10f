#pragma once

namespace OrvaneHost {

/// Keeps the user's interrupts for `waitForInterrupt`. To be called before other threads start, so that none of these
/// takes them.
void holdInterrupts();

/// Returns once the user has interrupted the program, or wants to end the session. Another interrupt ends the program
/// at once.
void waitForInterrupt();

} // namespace OrvaneHost

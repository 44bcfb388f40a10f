#pragma once

#include <functional>
#include <string>
#include <thread>

namespace Qx::Detail {

/// Starts a thread that takes none of the signals that are sent to the process: they are for the host's threads.
std::thread startThread(std::function<void()> run);

/// A number that changes when the threads that the process has started are gone: in a forked child, and on Windows once
/// the process ends and DLLs are told so.
long processId();

/// Names the calling thread for debuggers, with as much of `name` as the system takes. Does nothing where it can't.
void nameThisThread(const std::string& name);

} // namespace Qx::Detail

#pragma once

#include <functional>
#include <string>
#include <thread>

namespace Qx::Detail {

/// Starts a thread that handles none of the signals sent to the process: they are for the host's
/// threads.
std::thread startThread(std::function<void()> run);

/// Returns a number that changes once the threads of the process are gone: in a forked child, and
/// on Windows when the process is ending and notifies its DLLs.
long processId();

/// Names the calling thread for debuggers, with as much of `name` as the system accepts. Does
/// nothing on systems where it can't.
void nameThisThread(const std::string& name);

} // namespace Qx::Detail

#pragma once

#include "HTTPClient/HTTPProgress.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace OrvaneHost {

/// Shows, in one line on standard error, how long the program has been waiting for an answer and
/// how much of it has arrived, and erases the line afterwards. Shows nothing during the first
/// second, or if standard error is not a terminal.
class ProgressLine {
public:
    ProgressLine() = default;
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine();

    /// Call when waiting begins. The time shown is that since the first call.
    void start();

    /// Thread-safe.
    void update(const Qx::HTTPProgress& progress);

    /// Call when waiting ends. The line has been erased when this returns.
    void stop();

private:
    void run();
    void show(const std::string& text);

    std::mutex mutex_;
    std::condition_variable changed_;
    std::thread thread_; // Started by the first `start`.
    bool isEnding_ = false;
    bool isWaiting_ = false;
    std::optional<std::chrono::steady_clock::time_point> started_; // When waiting first began.
    Qx::HTTPProgress progress_;
    std::string shown_;
};

} // namespace OrvaneHost

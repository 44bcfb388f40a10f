#pragma once

#include "HTTPClient/HTTPProgress.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>

namespace OrvaneHost {

/// Shows how long an answer has been awaited and how much of it has come, in one line on standard error that it removes
/// again. It shows nothing during the first second, nor if standard error is not a terminal.
class ProgressLine {
public:
    ProgressLine() = default;
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine();

    /// Waiting begins.
    void start();

    /// May be called from any thread.
    void update(const Qx::HTTPProgress& progress);

    /// Waiting is over: nothing is shown any more when this returns.
    void stop();

private:
    void run();
    void show(const std::string& text);

    std::mutex mutex_;
    std::condition_variable changed_;
    std::thread thread_; // Runs from the first `start` on.
    bool isEnding_ = false;
    bool isWaiting_ = false;
    std::chrono::steady_clock::time_point started_;
    Qx::HTTPProgress progress_;
    std::size_t shownWidth_ = 0;
};

} // namespace OrvaneHost

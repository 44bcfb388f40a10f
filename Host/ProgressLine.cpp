#include "Host/ProgressLine.h"

#include "Host/TextOutput.h"

#include <fmt/format.h>
#include <system_error>

namespace OrvaneHost {

namespace {

using namespace std::chrono_literals;

std::string inMiB(std::uint64_t bytes) {
    return fmt::format("{:.1f}", static_cast<double>(bytes) / (1 << 20));
}

std::string describe(const Qx::HTTPProgress& progress, std::chrono::seconds waited) {
    if (progress.received == 0)
        return fmt::format("orvane: waiting ({} s)", waited.count());
    const std::string total = progress.total ? " of " + inMiB(*progress.total) : std::string();
    return fmt::format("orvane: {}{} MiB ({} s)", inMiB(progress.received), total, waited.count());
}

} // namespace

ProgressLine::~ProgressLine() {
    if (!thread_.joinable())
        return;
    stop();
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void ProgressLine::start() {
    if (!isTerminal(stderr))
        return;
    try {
        if (!thread_.joinable())
            thread_ = std::thread([this] { run(); });
    } catch (const std::system_error&) {
        return; // An answer without a progress line is better than none.
    }
    const std::lock_guard lock(mutex_);
    isWaiting_ = true;
    if (!started_)
        started_ = std::chrono::steady_clock::now();
    progress_ = {};
    changed_.notify_one();
}

void ProgressLine::update(const Qx::HTTPProgress& progress) {
    const std::lock_guard lock(mutex_);
    progress_ = progress;
}

void ProgressLine::stop() {
    const std::lock_guard lock(mutex_);
    isWaiting_ = false;
    show("");
}

void ProgressLine::run() {
    std::unique_lock lock(mutex_);
    while (!isEnding_) {
        if (!isWaiting_) {
            changed_.wait(lock);
            continue;
        }
        // Quick answers to many requests, each of which ends the wait, must not make the line flicker.
        if (changed_.wait_for(lock, 250ms) == std::cv_status::no_timeout || !isWaiting_)
            continue;
        const auto waited = std::chrono::steady_clock::now() - *started_;
        if (waited >= 1s)
            show(describe(progress_, std::chrono::duration_cast<std::chrono::seconds>(waited)));
    }
}

// Overwrites what was shown before.
void ProgressLine::show(const std::string& text) {
    if (text == shown_)
        return;
    const std::string blanks(shown_.size() > text.size() ? shown_.size() - text.size() : 0, ' ');
    static_cast<void>(writeText(stderr, fmt::format("\r{}{}{}", text, blanks, text.empty() ? "\r" : "")));
    shown_ = text;
}

} // namespace OrvaneHost

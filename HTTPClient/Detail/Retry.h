#pragma once

#include <chrono>
#include <optional>
#include <string>

// When a request is worth another attempt.
namespace Qx::Detail {

/// Whether a response of that status may be another one in a moment.
bool isTransient(int status);

/// How long the header Retry-After of a response asks to wait, in seconds or until a date; nothing if its value is
/// none, or the date is past.
std::optional<std::chrono::seconds> retryAfter(const std::string& value);

/// How long to wait after the attempt of that number, of which the first waits `delay`, give or take a fifth, and each
/// further one twice as long; a day at most.
std::chrono::steady_clock::duration timeBeforeRetry(int attempt, std::chrono::milliseconds delay);

} // namespace Qx::Detail

#pragma once

#include <chrono>
#include <optional>
#include <string>

// When to retry a request.
namespace Qx::Detail {

/// Returns whether the status is a temporary failure, which a retry may overcome.
bool isTransient(int status);

/// Returns how long a Retry-After header asks to wait, in seconds or until a date; nothing if its
/// value is invalid, or the time has passed.
std::optional<std::chrono::seconds> retryAfter(const std::string& value);

/// Returns how long to wait after the attempt of that number: after the first, `delay`, give or
/// take a fifth; after each further one, twice as long; at most a day.
std::chrono::steady_clock::duration timeBeforeRetry(int attempt, std::chrono::milliseconds delay);

} // namespace Qx::Detail

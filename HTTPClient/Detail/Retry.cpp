#include "HTTPClient/Detail/Retry.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <curl/curl.h>
#include <random>
#include <system_error>

namespace Qx::Detail {

bool isTransient(int status) {
    constexpr std::array transient{429, 502, 503, 504};
    return std::find(transient.begin(), transient.end(), status) != transient.end();
}

std::optional<std::chrono::seconds> retryAfter(const std::string& value) {
    if (value.empty())
        return std::nullopt;
    std::int64_t seconds = 0;
    const char* const end = value.data() + value.size();
    const auto [parsed, error] = std::from_chars(value.data(), end, seconds);
    if (error == std::errc::result_out_of_range)
        return std::chrono::seconds::max();
    if (error != std::errc() || parsed != end)
        seconds = curl_getdate(value.c_str(), nullptr) - std::time(nullptr);
    return seconds > 0 ? std::optional(std::chrono::seconds(seconds)) : std::nullopt;
}

std::chrono::steady_clock::duration timeBeforeRetry(int attempt, std::chrono::milliseconds delay) {
    using Clock = std::chrono::steady_clock;
    // Clients that failed at the same time should not all come back at the same time.
    thread_local std::minstd_rand random(static_cast<unsigned>(Clock::now().time_since_epoch().count()));
    const double fifth = std::uniform_real_distribution(0.8, 1.2)(random);
    const std::chrono::duration<double> time = fifth * std::exp2(attempt - 1) * delay;
    constexpr std::chrono::duration<double> longest = std::chrono::hours(24);
    return std::chrono::duration_cast<Clock::duration>(std::min(time, longest));
}

} // namespace Qx::Detail

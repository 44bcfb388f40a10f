#include "Host/AttemptText.h"

#include <fmt/format.h>

namespace OrvaneHost {

namespace {

double milliseconds(std::chrono::microseconds time) {
    return static_cast<double>(time.count()) / 1000;
}

std::string outcomeOf(const Qx::HTTPAttempt& attempt) {
    if (attempt.status == 0)
        return attempt.reason;
    return fmt::format("{}, {}, {} bytes", attempt.status, attempt.protocol, attempt.bytesReceived);
}

} // namespace

std::string describe(const Qx::HTTPAttempt& attempt) {
    const char* const method = attempt.method == Qx::HTTPRequest::Method::POST ? "POST" : "GET";
    const char* const connection = attempt.connected.count() == 0 ? "no"
                                   : attempt.isConnectionReused   ? "reused"
                                                                  : "new";
    return fmt::format("attempt {}: {} {}: {}, {:.1f} ms (name resolved {:.1f}, connected {:.1f}, first byte {:.1f}), "
                       "{} connection",
                       attempt.number, method, attempt.url, outcomeOf(attempt), milliseconds(attempt.total),
                       milliseconds(attempt.nameResolved), milliseconds(attempt.connected),
                       milliseconds(attempt.firstByte), connection);
}

} // namespace OrvaneHost

#include "HTTPClient/Detail/CurlAttempt.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace Qx::Detail {

HTTPAttempt measureExchange(CURL* easy) {
    const auto information = [easy](CURLINFO what) {
        curl_off_t value = 0;
        curl_easy_getinfo(easy, what, &value);
        return value;
    };
    const auto time = [&](CURLINFO what) { return std::chrono::microseconds(information(what)); };
    HTTPAttempt attempt;
    attempt.bytesReceived = static_cast<std::uint64_t>(information(CURLINFO_SIZE_DOWNLOAD_T));
    attempt.nameResolved = time(CURLINFO_NAMELOOKUP_TIME_T);
    attempt.connected = std::max(time(CURLINFO_CONNECT_TIME_T), time(CURLINFO_APPCONNECT_TIME_T));
    attempt.firstByte = time(CURLINFO_STARTTRANSFER_TIME_T);
    long connections = 0;
    curl_easy_getinfo(easy, CURLINFO_NUM_CONNECTS, &connections);
    attempt.isConnectionReused = connections == 0 && information(CURLINFO_PRETRANSFER_TIME_T) > 0;
    return attempt;
}

} // namespace Qx::Detail

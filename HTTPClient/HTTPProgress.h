#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Qx {

/// How much of the body of a successful response has arrived.
struct HTTPProgress {
    /// The URL, as in `HTTPAttempt`.
    std::string url;

    /// Bytes as received, before decoding.
    std::uint64_t received = 0;

    /// The total number of bytes, if the server states it.
    std::optional<std::uint64_t> total;
};

} // namespace Qx

#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Qx {

/// How much of a successful response's body has come.
struct HTTPProgress {
    /// Where it comes from, as in `HTTPAttempt`.
    std::string url;

    /// Bytes as received, before they are decoded.
    std::uint64_t received = 0;

    /// How many there will be, if the server says so.
    std::optional<std::uint64_t> total;
};

} // namespace Qx

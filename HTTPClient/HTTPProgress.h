#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Qx {

/// How much of a response's body has come.
struct HTTPProgress {
    /// Where it comes from, without the values of the query's keys and without a fragment.
    std::string url;

    /// Bytes as received, before they are decoded.
    std::uint64_t received = 0;

    /// How many there will be, if the server says so.
    std::optional<std::uint64_t> total;
};

} // namespace Qx

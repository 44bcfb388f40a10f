#pragma once

#include "HTTPClient/Detail/TransferRules.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <thread>
#include <utility>

namespace Qx::Detail {

/// What the transfers of one client have in common. It outlives them.
struct Session {
    explicit Session(CurlHTTPClientOptions options) : rules(std::move(options)) {}

    const TransferRules rules;

    /// Transfers are numbered from 1 in the order of their submission. Those up to `cancelled` end as soon as possible.
    std::atomic<std::uint64_t> cancelled = 0;
    std::atomic<bool> isClosed = false;

    // Accessed only by `TransferThread`, under its mutex.
    std::uint64_t submitted = 0;
    std::size_t unfinished = 0;
    std::string lastToken; ///< The last token that the token source returned.
    std::thread::id tokenThread;

    void setLastToken(const std::string& token) noexcept {
        try {
            lastToken = token;
        } catch (const std::bad_alloc&) {
            lastToken.clear(); // The source is then called once more than necessary.
        }
    }
};

} // namespace Qx::Detail

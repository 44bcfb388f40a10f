#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace OrvaneHost {

/// What a `CurlHTTPClient` is to keep to. Times are more than 0, and none runs while a request waits for its turn.
struct CurlHTTPClientSettings {
    /// Sent as bearer token with requests that ask for one; empty sends none.
    std::string token;

    std::chrono::milliseconds connectTimeout = std::chrono::seconds(10);
    std::chrono::milliseconds requestTimeout =
        std::chrono::seconds(120); ///< From its start, name look-up included, to the last byte.
    std::chrono::seconds stallTimeout = std::chrono::seconds(30); ///< Below one byte a second on average.

    std::size_t maxHeaderBytes = std::size_t{256}
                                 << 10;                ///< Of all headers on the way to an answer, redirects included.
    std::size_t maxBodyBytes = std::size_t{256} << 20; ///< Of the decoded body.
    int maxRedirects = 5;                              ///< 0 or less follows none.

    std::size_t maxConnections = 16; ///< At least one; requests beyond these wait for their turn.
    std::size_t deliveryThreads = 2; ///< Threads that call completions, at least one.

    /// A file of certificates (PEM) to trust in place of the system's; empty for the system's.
    std::string certificateFile;
};

} // namespace OrvaneHost

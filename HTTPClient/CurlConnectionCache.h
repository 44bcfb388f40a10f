#pragma once

#include "HTTPClient/qxhttpclient10_export.h"

#include <cstddef>
#include <memory>

namespace Qx {

struct CurlHTTPClientOptions;

namespace Detail {
class TransferThread;
}

/// The connections and TLS sessions that several `CurlHTTPClient`s share, and the thread that runs
/// their transfers.
///
/// Clients that share a cache are cheap to create: one for each dialog or operation, for example,
/// whose requests can then be cancelled together. They share nothing else: each client has its own
/// token, limits, and threads for callbacks and the token source, which sleep when idle. A client
/// keeps its cache alive. All clients of a cache must use the same proxy and certificates.
/// Thread-safe.
class QXHTTPCLIENT10_EXPORT CurlConnectionCache {
public:
    /// At most `maxConnections` connections (0 means 1) are open at a time; further requests wait
    /// for their turn. Throws `std::system_error` if the thread can't be started or the process has
    /// no file descriptors left, and `std::bad_alloc` when memory runs out.
    explicit CurlConnectionCache(std::size_t maxConnections = 16);
    CurlConnectionCache(const CurlConnectionCache&) = delete;
    CurlConnectionCache& operator=(const CurlConnectionCache&) = delete;
    ~CurlConnectionCache();

private:
    friend class CurlHTTPClient;

    struct Use;

    void require(const CurlHTTPClientOptions& options);

    const long processId_;
    std::unique_ptr<Use> use_;
    std::unique_ptr<Detail::TransferThread> transfers_;
};

} // namespace Qx

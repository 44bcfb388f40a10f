#pragma once

#include "HTTPClient/qxhttpclient10_export.h"

#include <cstddef>
#include <memory>

namespace Qx {

struct CurlHTTPClientOptions;

namespace Detail {
class TransferThread;
}

/// The connections and TLS sessions that several `CurlHTTPClient`s share, with the thread that runs their transfers.
///
/// Clients that share a cache are cheap to create, one for each dialogue or operation, say, whose requests can then be
/// cancelled together. They share nothing else: each has its own token, limits and threads for callbacks and the token
/// source, which wait for work. A cache lives as
/// long as a client that uses it. All its clients have the same proxy and certificates. May be used from several
/// threads at once.
class QXHTTPCLIENT10_EXPORT CurlConnectionCache {
public:
    /// At most `maxConnections`, at least one, are open at a time; requests beyond these wait for their turn. Throws
    /// `std::system_error` if a thread can't be started or there are no descriptors for it, and `std::bad_alloc`.
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

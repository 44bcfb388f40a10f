#include "HTTPClient/CurlConnectionCache.h"

#include "HTTPClient/CurlHTTPClientOptions.h"
#include "HTTPClient/Detail/Process.h"
#include "HTTPClient/Detail/TransferThread.h"

#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>

namespace Qx {

// The settings of the connections, fixed by the first client.
struct CurlConnectionCache::Use {
    struct Kind {
        std::optional<std::string> proxy;
        std::string certificateFile;
        bool operator==(const Kind&) const = default;
    };

    std::mutex mutex;
    std::optional<Kind> kind;
};

CurlConnectionCache::CurlConnectionCache(std::size_t maxConnections)
    : processId_(Detail::processId()),
      use_(std::make_unique<Use>()),
      transfers_(std::make_unique<Detail::TransferThread>(maxConnections)) {}

CurlConnectionCache::~CurlConnectionCache() {
    // In a forked child the thread does not exist, so it can't be joined.
    if (Detail::processId() != processId_)
        static_cast<void>(transfers_.release());
}

// libcurl would let a client use a connection on which another has authenticated to a proxy.
void CurlConnectionCache::require(const CurlHTTPClientOptions& options) {
    const Use::Kind kind{options.proxy, options.certificateFile};
    const std::lock_guard lock(use_->mutex);
    if (!use_->kind)
        use_->kind = kind;
    if (*use_->kind != kind)
        throw std::invalid_argument("connectionCache is already used with a different proxy or certificateFile");
}

} // namespace Qx

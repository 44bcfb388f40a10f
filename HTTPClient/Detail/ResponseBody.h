#pragma once

#include "HTTPClient/Detail/GzipDecoder.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace Qx::Detail {

/// The decoded body of a response, as far as it has arrived. The bodies of redirects count towards
/// its limit too.
class ResponseBody {
public:
    /// `maxBytes` limits both the bytes received and the decoded size.
    explicit ResponseBody(std::size_t maxBytes);

    /// `append` takes the next bytes of the body; `skip` only counts them. Both throw
    /// `TransferError` if the limit is exceeded. `append` also throws it if `isGzip` is set and the
    /// bytes are not gzip, and `std::bad_alloc` when memory runs out. While decoding, `append`
    /// calls `check` repeatedly, since a few bytes may decode to many, and lets its exceptions
    /// propagate.
    void append(std::string_view bytes, bool isGzip, const std::function<void()>& check);
    void skip(std::string_view bytes);

    /// Returns false if the body ends in the middle of a gzip stream.
    bool isComplete() const;

    /// Moves the body out, with room for what `HTTPResponse` adds after it.
    std::string take();

    /// Throws the `TransferError` for a body of more than `maxBytes`.
    [[noreturn]] void failTooLarge() const;

private:
    void appendDecoded(std::string_view decoded);
    void reserve(std::size_t more);

    std::size_t maxBytes_;
    std::size_t receivedBytes_ = 0;
    std::unique_ptr<GzipDecoder> gzip_;
    std::string text_;
};

} // namespace Qx::Detail

#pragma once

#include <array>
#include <functional>
#include <string_view>
#include <zlib.h>

namespace Qx::Detail {

/// Decodes a gzip body as it arrives, and knows whether it is complete.
class GzipDecoder {
public:
    /// Throws `std::bad_alloc` when memory runs out.
    GzipDecoder();
    GzipDecoder(const GzipDecoder&) = delete;
    GzipDecoder& operator=(const GzipDecoder&) = delete;
    ~GzipDecoder();

    /// Decodes `bytes`, which continue those of earlier calls, and passes the output to `take`,
    /// piece by piece. Throws `TransferError` if they are not gzip, and what `take` throws.
    void decode(std::string_view bytes, const std::function<void(std::string_view)>& take);

    /// Returns whether the bytes so far, if any, end where a gzip stream ends.
    bool isComplete() const;

private:
    z_stream stream_{};
    bool isComplete_ = true;
    std::array<char, 65536> decoded_{};
};

} // namespace Qx::Detail

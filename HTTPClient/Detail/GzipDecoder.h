#pragma once

#include <array>
#include <functional>
#include <string_view>
#include <zlib.h>

namespace Qx::Detail {

/// Decodes a gzip body as its bytes come, and knows whether it came whole.
class GzipDecoder {
public:
    /// Throws `std::bad_alloc`.
    GzipDecoder();
    GzipDecoder(const GzipDecoder&) = delete;
    GzipDecoder& operator=(const GzipDecoder&) = delete;
    ~GzipDecoder();

    /// Calls `take` with what `bytes`, which follow those of the calls before, decode to, piece by piece. Throws
    /// `TransferError` if they are not gzip, and what `take` throws.
    void decode(std::string_view bytes, const std::function<void(std::string_view)>& take);

    /// Whether the bytes so far, if any, end where a gzip stream does.
    bool isComplete() const;

private:
    z_stream stream_{};
    bool isComplete_ = true;
    std::array<char, 65536> decoded_{};
};

} // namespace Qx::Detail

#pragma once

#include "HTTPClient/Detail/GzipDecoder.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace Qx::Detail {

/// The body of a response, as far as it has come, decoded. What comes with redirects counts towards its limit too.
class ResponseBody {
public:
    /// `maxBytes` bounds what comes, and what that decodes to.
    explicit ResponseBody(std::size_t maxBytes);

    /// Takes bytes that follow those before, or only counts them. Throws `TransferError`, or `std::bad_alloc`, and what
    /// `check` throws, which is called now and then, since a few bytes may decode to many.
    void append(std::string_view bytes, bool isGzip, const std::function<void()>& check);
    void skip(std::string_view bytes);

    /// Whether it does not end within a gzip stream.
    bool isComplete() const;

    /// The body, with room for what `HTTPResponse` adds after it. Nothing is left here.
    std::string take();

    /// To be thrown for more than `maxBytes`.
    [[noreturn]] void failTooLarge() const;

private:
    void keep(std::string_view decoded);
    void reserve(std::size_t more);

    std::size_t maxBytes_;
    std::size_t receivedBytes_ = 0;
    std::unique_ptr<GzipDecoder> gzip_;
    std::string text_;
};

} // namespace Qx::Detail

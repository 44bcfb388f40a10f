#include "HTTPClient/Detail/ResponseBody.h"

#include "Base/QxBase10/HTTPResponse.h"
#include "HTTPClient/Detail/TransferError.h"

#include <algorithm>
#include <exception>
#include <fmt/format.h>
#include <utility>

namespace Qx::Detail {

ResponseBody::ResponseBody(std::size_t maxBytes) : maxBytes_(maxBytes) {}

void ResponseBody::append(std::string_view bytes, bool isGzip, const std::function<void()>& check) {
    skip(bytes);
    if (isGzip && !gzip_)
        gzip_ = std::make_unique<GzipDecoder>();
    if (gzip_)
        gzip_->decode(bytes, [&](std::string_view decoded) {
            check();
            appendDecoded(decoded);
        });
    else
        appendDecoded(bytes);
}

void ResponseBody::skip(std::string_view bytes) {
    if (bytes.size() > maxBytes_ - receivedBytes_)
        failTooLarge();
    receivedBytes_ += bytes.size();
}

void ResponseBody::appendDecoded(std::string_view decoded) {
    if (decoded.size() > maxBytes_ - text_.size())
        failTooLarge();
    reserve(decoded.size());
    text_.append(decoded);
}

// Growing by copying would hold a large body in memory twice. Beyond a few megabytes, the permitted
// maximum is therefore reserved at once, if available: only memory that is written to is actually
// used.
void ResponseBody::reserve(std::size_t more) {
    constexpr std::size_t large = std::size_t{4} << 20;
    const std::size_t needed = text_.size() + more + HTTPResponse::padding;
    if (needed <= text_.capacity())
        return;
    try {
        if (needed > large) {
            text_.reserve(maxBytes_ + HTTPResponse::padding);
            return;
        }
    } catch (const std::exception&) {
        // The limit may exceed this machine's memory; the body need not.
    }
    text_.reserve(std::max(needed, 2 * text_.capacity()));
}

bool ResponseBody::isComplete() const {
    return !gzip_ || gzip_->isComplete();
}

std::string ResponseBody::take() {
    return std::move(text_);
}

void ResponseBody::failTooLarge() const {
    throw TransferError(FailureKind::TOO_LARGE, fmt::format("the response is longer than {} bytes", maxBytes_));
}

} // namespace Qx::Detail

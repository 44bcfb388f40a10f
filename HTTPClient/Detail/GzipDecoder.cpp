#include "HTTPClient/Detail/GzipDecoder.h"

#include "HTTPClient/Detail/TransferError.h"

#include <new>

namespace Qx::Detail {

GzipDecoder::GzipDecoder() {
    constexpr int gzipOnly = 16;
    if (inflateInit2(&stream_, MAX_WBITS + gzipOnly) != Z_OK)
        throw std::bad_alloc();
}

GzipDecoder::~GzipDecoder() {
    inflateEnd(&stream_);
}

void GzipDecoder::decode(std::string_view bytes, const std::function<void(std::string_view)>& take) {
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data())); // zlib only reads there.
    stream_.avail_in = static_cast<uInt>(bytes.size());
    // If the output has filled the buffer, there may be more, even without further input.
    for (stream_.avail_out = 0; stream_.avail_in > 0 || (stream_.avail_out == 0 && !isComplete_);) {
        // A body may consist of several concatenated gzip streams.
        if (isComplete_ && stream_.total_in > 0)
            inflateReset(&stream_);
        stream_.next_out = reinterpret_cast<Bytef*>(decoded_.data());
        stream_.avail_out = static_cast<uInt>(decoded_.size());
        const int result = inflate(&stream_, Z_NO_FLUSH);
        isComplete_ = result == Z_STREAM_END;
        if (result == Z_MEM_ERROR)
            throw std::bad_alloc();
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
            throw TransferError(FailureKind::MALFORMED_RESPONSE,
                                "the response is not gzip, although its header says so");
        take({decoded_.data(), decoded_.size() - stream_.avail_out});
    }
}

bool GzipDecoder::isComplete() const {
    return isComplete_;
}

} // namespace Qx::Detail

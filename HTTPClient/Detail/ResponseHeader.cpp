#include "HTTPClient/Detail/ResponseHeader.h"

#include "HTTPClient/Detail/HTTPText.h"
#include "HTTPClient/Detail/TransferError.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace Qx::Detail {

namespace {

// Longer lengths do not fit in libcurl's integers; it would treat them as missing.
constexpr std::size_t maxLengthDigits = 18;

[[noreturn]] void failMalformed(const char* reason) {
    throw TransferError(FailureKind::MALFORMED_RESPONSE, reason);
}

bool isLength(std::string_view text) {
    return !text.empty() && text.size() <= maxLengthDigits &&
           text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Accepts only "HTTP/1.1 200 OK" or "HTTP/2 200". libcurl is more lenient, and may then take an
// error for a success, or an HTTP/1.1 response for an HTTP/2 one.
int statusIn(std::string_view line, bool isHTTP2) {
    constexpr std::string_view digits = "0123456789";
    const bool isVersion =
        isHTTP2 ? line.starts_with("HTTP/2 ") : line.starts_with("HTTP/1.1 ") || line.starts_with("HTTP/1.0 ");
    const std::size_t start = line.find(' ') + 1;
    const std::size_t end = start + 3;
    if (!isVersion || line.find_first_not_of(digits, start) != end || line[start] == '0' ||
        std::string_view(" \r\n").find(line[end]) == std::string_view::npos)
        failMalformed("malformed status line in the response");
    int status = 0;
    std::from_chars(line.data() + start, line.data() + end, status);
    return status;
}

} // namespace

void ResponseHeader::readLine(std::string_view line, bool isHTTP2) {
    if (line.starts_with("HTTP/")) {
        start(line, isHTTP2);
    } else if (line == "\r\n" || line == "\n") {
        phase_ = Phase::ENDED;
    } else {
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos || !isHeaderName(line.substr(0, colon)))
            failMalformed("malformed header line in the response");
        readField(std::string(line.substr(0, colon)), std::string(withoutBlanks(line.substr(colon + 1))));
    }
}

void ResponseHeader::start(std::string_view statusLine, bool isHTTP2) {
    if (phase_ == Phase::OPEN)
        failMalformed("the header of the response ended early");
    *this = ResponseHeader();
    phase_ = Phase::OPEN;
    status_ = statusIn(statusLine, isHTTP2);
    protocol_ = statusLine.substr(0, statusLine.find(' '));
    if (status_ == 101)
        failMalformed("the response changes the protocol, which was not requested");
}

void ResponseHeader::readField(const std::string& name, const std::string& value) {
    readFraming(name, value);
    if (phase_ == Phase::ENDED)
        return; // A trailer comes too late to say anything about the body.
    fields_.emplace_back(name, value);
    if (isSameName(name, "content-encoding") && !value.empty() && !isSameName(value, "identity")) {
        if (isGzip_ || !(isSameName(value, "gzip") || isSameName(value, "x-gzip")))
            failMalformed("the response is encoded in a way that was not requested");
        isGzip_ = true;
    } else if (isSameName(name, "location")) {
        if (location_.value_or(value) != value)
            failMalformed("ambiguous Location in the response");
        location_ = value;
    }
}

void ResponseHeader::readFraming(const std::string& name, const std::string& value) {
    if (isSameName(name, "transfer-encoding")) {
        if (isChunked_ || !isSameName(value, "chunked"))
            failMalformed("ambiguous Transfer-Encoding in the response");
        isChunked_ = true;
    } else if (isSameName(name, "content-length")) {
        if (!isLength(value) || length_.value_or(value) != value)
            failMalformed("ambiguous Content-Length in the response");
        length_ = value;
    }
    if (isChunked_ && length_)
        failMalformed("the response has both a Content-Length and a Transfer-Encoding");
}

HTTPResponse::Headers ResponseHeader::takeFields() {
    return std::move(fields_);
}

std::string ResponseHeader::field(const std::string& name) const {
    const auto found =
        std::find_if(fields_.begin(), fields_.end(), [&](const auto& field) { return isSameName(field.first, name); });
    return found == fields_.end() ? std::string() : found->second;
}

bool ResponseHeader::hasEnded() const {
    return phase_ == Phase::ENDED;
}

const std::string& ResponseHeader::redirection() const {
    static const std::string none;
    constexpr std::array redirecting{301, 302, 303, 307, 308};
    const bool redirects = std::find(redirecting.begin(), redirecting.end(), status_) != redirecting.end();
    return redirects && location_ ? *location_ : none;
}

int ResponseHeader::status() const {
    return status_;
}

const std::string& ResponseHeader::protocol() const {
    return protocol_;
}

bool ResponseHeader::isGzip() const {
    return isGzip_;
}

bool ResponseHeader::endsWithConnection() const {
    const bool hasBody = status_ >= 200 && status_ != 204 && status_ != 304;
    return hasBody && !isChunked_ && !length_;
}

} // namespace Qx::Detail

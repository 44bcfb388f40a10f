#include "Base/QxBaseCore10/Uri.h"

#include <algorithm>
#include <boost/url/encode.hpp>
#include <boost/url/rfc/gen_delim_chars.hpp>
#include <boost/url/rfc/sub_delim_chars.hpp>
#include <boost/url/rfc/unreserved_chars.hpp>
#include <utility>

namespace Qx {

namespace {

constexpr auto urlChars = boost::urls::unreserved_chars + boost::urls::gen_delim_chars + boost::urls::sub_delim_chars;

// What is encoded already stays so: the encoder gets only what stands between the percent signs.
std::string encodeBetweenPercentSigns(std::string_view text) {
    std::string encoded;
    while (true) {
        const std::size_t percent = text.find('%');
        encoded += boost::urls::encode(text.substr(0, percent), urlChars);
        if (percent == std::string_view::npos)
            return encoded;
        encoded += '%';
        text.remove_prefix(percent + 1);
    }
}

} // namespace

Uri::Uri(std::string text) : text_(std::move(text)) {}

std::string Uri::ToString(bool encoded) const {
    return encoded ? encodeBetweenPercentSigns(text_) : text_;
}

void Uri::SetQueryVariable(std::string_view key, std::string_view value) {
    const std::size_t end = std::min(text_.find('#'), text_.size());
    const bool hasQuery = text_.find('?') < end;
    text_.insert(end, (hasQuery ? '&' : '?') + UriEncode(key) + '=' + UriEncode(value));
}

std::string Uri::UriEncode(std::string_view text) {
    return boost::urls::encode(text, boost::urls::unreserved_chars);
}

} // namespace Qx

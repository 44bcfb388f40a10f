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

// Writes in place, because the encoder's overload that returns a string terminates the program when
// memory runs out.
template <class CharSet>
void appendEncoded(std::string& text, std::string_view part, const CharSet& unencoded) {
    const std::size_t start = text.size();
    const std::size_t size = boost::urls::encoded_size(part, unencoded);
    text.resize(start + size);
    boost::urls::encode(text.data() + start, size, part, unencoded);
}

// Leaves what is already encoded as it is: only the text between percent signs goes to the encoder.
std::string encodeBetweenPercentSigns(std::string_view text) {
    std::string encoded;
    while (true) {
        const std::size_t percent = text.find('%');
        appendEncoded(encoded, text.substr(0, percent), urlChars);
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
    std::string encoded;
    appendEncoded(encoded, text, boost::urls::unreserved_chars);
    return encoded;
}

} // namespace Qx

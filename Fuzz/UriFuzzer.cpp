// Uses arbitrary text as a URI, as the key and value of a query variable, and as text to encode.

#include "Base/QxBaseCore10/Uri.h"
#include "Fuzz/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using OrvaneFuzz::require;

std::string decode(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            decoded += text[i];
            continue;
        }
        const std::string digits(text.substr(i + 1, 2));
        decoded += static_cast<char>(std::strtoul(digits.c_str(), nullptr, 16));
        i += 2;
    }
    return decoded;
}

const std::string unreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
const std::string reserved = ":/?#[]@!$&'()*+,;=";

bool isMadeOf(const std::string& text, const std::string& characters) {
    return text.find_first_not_of(characters) == std::string::npos;
}

void checkEncoding(const std::string& text) {
    const std::string encoded = Qx::Uri::UriEncode(text);
    require(isMadeOf(encoded, unreserved + '%'), "encoded text contains only unreserved characters and escapes");
    require(decode(encoded) == text, "decoding encoded text returns the original");
}

void checkRendering(const std::string& text) {
    const Qx::Uri uri(text);
    require(uri.ToString(false) == text, "a URI keeps its text");
    const std::string rendered = uri.ToString(true);
    require(isMadeOf(rendered, unreserved + reserved + '%'),
            "an encoded URI contains only characters allowed in a request");
    require(Qx::Uri(rendered).ToString(true) == rendered, "encoding a URI again changes nothing");
    if (text.find('%') == std::string::npos)
        require(decode(rendered) == text, "decoding an encoded URI returns its text");
}

void checkPair(const std::string& text, const std::string& key, const std::string& value) {
    Qx::Uri uri(text);
    uri.SetQueryVariable(key, value);
    const std::string pair = Qx::Uri::UriEncode(key) + '=' + Qx::Uri::UriEncode(value);
    const std::size_t end = std::min(text.find('#'), text.size());
    const char* separator = text.find('?') < end ? "&" : "?";
    require(uri.ToString(false) == text.substr(0, end) + separator + pair + text.substr(end),
            "the pair follows the query and precedes the fragment");
    uri.SetQueryVariable(value, key);
    const std::string both = pair + '&' + Qx::Uri::UriEncode(value) + '=' + Qx::Uri::UriEncode(key);
    require(uri.ToString(false).find(both) != std::string::npos, "pairs are in the order of the calls");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    checkEncoding(text);
    checkRendering(text);
    // An input of three lines is the URI, the key and the value of one call.
    const std::size_t first = text.find('\n');
    const std::size_t second = first == std::string::npos ? first : text.find('\n', first + 1);
    if (second != std::string::npos)
        checkPair(text.substr(0, first), text.substr(first + 1, second - first - 1), text.substr(second + 1));
    return 0;
}

#include "HTTPClient/Detail/HTTPText.h"

#include <algorithm>
#include <curl/curl.h>

namespace Qx::Detail {

bool isControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F;
}

bool hasControl(std::string_view text) {
    return std::any_of(text.begin(), text.end(), isControl);
}

bool isHeaderName(std::string_view name) {
    constexpr std::string_view permitted =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789!#$%&'*+-.^_`|~";
    return !name.empty() && name.find_first_not_of(permitted) == std::string_view::npos;
}

bool isSameName(const std::string& one, const std::string& other) {
    return curl_strequal(one.c_str(), other.c_str()) != 0;
}

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = std::min(text.find_first_not_of(blanks), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

} // namespace Qx::Detail

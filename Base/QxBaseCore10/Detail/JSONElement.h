#pragma once

#include "Base/QxBaseCore10/JSONPlace.h"

#include <bit>
#include <simdjson.h>
#include <type_traits>

// Private: the one place that knows how the parser's values are kept in a `JSONPlace`. The parser's values
// are a document and an index, so a place is exactly their bits and the public headers stay free of it.
namespace Qx::Detail {

template <class ParserValue>
ParserValue fromPlace(const JSONPlace& place) {
    return std::bit_cast<ParserValue>(place);
}

template <class ParserValue>
JSONPlace toPlace(const ParserValue& value) {
    static_assert(std::is_trivially_copyable_v<ParserValue>);
    return std::bit_cast<JSONPlace>(value);
}

/// The parser's element at `place`. Call it only where `place.document` is set.
inline simdjson::dom::element elementAt(const JSONPlace& place) {
    return fromPlace<simdjson::dom::element>(place);
}

} // namespace Qx::Detail

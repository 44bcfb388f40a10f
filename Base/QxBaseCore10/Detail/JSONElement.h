#pragma once

#include "Base/QxBaseCore10/JSONPlace.h"

#include <bit>
#include <simdjson.h>
#include <type_traits>

// Private: the only code that knows how the parser's values are stored in a `JSONPlace`. Such a
// value consists of a document pointer and an index, so a place holds exactly its bits, and the
// public headers need not include the parser.
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

/// Returns the parser's element at `place`. Requires that `place.document` is set.
inline simdjson::dom::element elementAt(const JSONPlace& place) {
    return fromPlace<simdjson::dom::element>(place);
}

} // namespace Qx::Detail

#pragma once

#include <boost/nowide/replacement.hpp>
#include <boost/nowide/utf/utf.hpp>

namespace Qx::Detail {

/// Returns the code point at `next` and advances `next` past it. If the text there is not valid,
/// returns U+FFFD and advances by a single unit, so that nothing after it is lost.
template <class Unit>
boost::nowide::utf::code_point decodeNext(const Unit*& next, const Unit* end) {
    using namespace boost::nowide::utf;
    const Unit* const start = next;
    const code_point point = utf_traits<Unit>::decode(next, end);
    if (point != illegal && point != incomplete)
        return point;
    next = start + 1;
    return BOOST_NOWIDE_REPLACEMENT_CHARACTER;
}

} // namespace Qx::Detail

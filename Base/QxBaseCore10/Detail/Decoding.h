#pragma once

#include <boost/nowide/replacement.hpp>
#include <boost/nowide/utf/utf.hpp>

namespace Qx::Detail {

/// The code point at `next`, which it steps over. For what is not valid it steps over a single unit, so that nothing
/// after it is lost, and returns U+FFFD.
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

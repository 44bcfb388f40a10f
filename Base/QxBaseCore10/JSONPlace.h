#pragma once

#include <cstddef>

namespace Qx::Detail {

/// The place of one value in a parsed JSON document, which it does not own. Without a document it
/// represents null.
struct JSONPlace {
    const void* document = nullptr; ///< Null for no value.
    std::size_t index = 0;          ///< The value's index in the parser's output.
};

} // namespace Qx::Detail

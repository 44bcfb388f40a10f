#pragma once

#include <cstddef>

namespace Qx::Detail {

/// The place of one value in a parsed JSON text, without a share in its ownership. Without a document it stands for
/// null.
struct JSONPlace {
    const void* document = nullptr;
    std::size_t index = 0;
};

} // namespace Qx::Detail

#pragma once

#include <cstddef>
#include <memory>

namespace Qx::Detail {

/// Shared ownership of one parsed JSON text and the place of one value in it: what `JSONNode` and
/// `JSONRef` are made of. The text is never written after parsing, so a copy costs a reference count
/// and reading needs no lock. Without a document it stands for null.
struct JSONValue {
    struct Place {
        const void* document = nullptr;
        std::size_t index = 0;
    };

    std::shared_ptr<const void> document;
    Place place;
};

} // namespace Qx::Detail

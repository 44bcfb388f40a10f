#pragma once

#include "Base/QxBaseCore10/JSONPlace.h"
#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <cstdint>
#include <string>

namespace Qx {

/// One value of a JSON document: an object's member or an array's element.
///
/// A reference is a view: it is good as long as any node of the document lives, and costs nothing to copy. Make a
/// `JSONNode` of it to keep the value. It is read-only and may be used from several threads at once. No operation
/// throws for what the JSON holds; one that makes a string may throw `std::bad_alloc`.
class QXBASECORE10_EXPORT JSONRef {
public:
    /// A reference to null.
    JSONRef() = default;

    /// True for an explicit null, and for a reference to nothing.
    bool isNull() const;

    /// Writes the value into `destination` and returns true. A string gives its text, a boolean "true" or "false", an
    /// integer its decimal digits, any other number the shortest text that reads back as the same number; an integer
    /// beyond 64 bits, or a number too large for a double, gives its digits as they came. For anything else, null
    /// included, the destination stays as it was and the result is false. The wide form converts as `ToIString` does.
    bool get(std::string& destination) const;
    bool get(std::wstring& destination) const;

    /// Writes a JSON boolean. For anything else the destination stays as it was and the result is false.
    bool get(bool& destination) const;

    /// Writes a JSON integer within the range of 32 bits. For anything else the destination stays as it
    /// was and the result is false.
    bool get(std::int32_t& destination) const;

    /// The value as the narrow `get` writes it, or `defaultText` where that gives false.
    std::string asHString(const std::string& defaultText) const;

private:
    friend class JSONNode;
    explicit JSONRef(const Detail::JSONPlace& place) : place_(place) {}

    Detail::JSONPlace place_;
};

} // namespace Qx

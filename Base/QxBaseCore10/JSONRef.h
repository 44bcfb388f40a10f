#pragma once

#include "Base/QxBaseCore10/JSONPlace.h"
#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <cstdint>
#include <string>

namespace Qx {

/// A reference to one value of a JSON document: an object's member or an array's element.
///
/// A reference is a view: it is valid as long as any node of the document exists, and is cheap to
/// copy. Make a `JSONNode` from it to keep the value. It is read-only and may be used from several
/// threads at once. No operation throws because of what the JSON contains; one that creates a
/// string may throw `std::bad_alloc`.
class QXBASECORE10_EXPORT JSONRef {
public:
    /// A reference to null.
    JSONRef() = default;

    /// Returns true for an explicit null, and for a reference to nothing, such as a missing key.
    bool isNull() const;

    /// Stores the value in `destination` as text and returns true: a string as it is, a boolean as
    /// "true" or "false", an integer as its decimal digits, any other number as the shortest text
    /// that reads back as the same number; an integer beyond 64 bits, or a number too large for a
    /// double, exactly as written in the JSON. For anything else, including null, leaves
    /// `destination` unchanged and returns false.
    bool get(std::string& destination) const;

    /// The same, converted as by `ToIString`.
    bool get(std::wstring& destination) const;

    /// Stores a JSON boolean and returns true. For anything else, leaves `destination` unchanged
    /// and returns false.
    bool get(bool& destination) const;

    /// Stores a JSON integer that fits in 32 bits and returns true. For anything else, leaves
    /// `destination` unchanged and returns false.
    bool get(std::int32_t& destination) const;

    /// Returns the text that the narrow `get` would store, or `defaultText` if that returns false.
    std::string asHString(const std::string& defaultText) const;

private:
    friend class JSONNode;
    explicit JSONRef(const Detail::JSONPlace& place) : place_(place) {}

    Detail::JSONPlace place_;
};

} // namespace Qx

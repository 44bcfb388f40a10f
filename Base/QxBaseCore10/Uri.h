#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <string>
#include <string_view>

namespace Qx {

/// A URL as text. A plain value; may be read from several threads at once. It holds any text, valid
/// or not, and only `SetQueryVariable` changes it.
class QXBASECORE10_EXPORT Uri {
public:
    /// Takes any text.
    explicit Uri(std::string text);

    /// Returns the URL. If `encoded` is true, every byte that is not allowed in a URL (spaces,
    /// control characters, non-ASCII, double quotes and the like) is percent-encoded, and everything else,
    /// including "%", is unchanged; if it is false, the text is returned as it is.
    std::string ToString(bool encoded) const;

    /// Appends "key=value" to the query, before any fragment. Everything in `key` and `value`
    /// except letters, digits and "-._~" is percent-encoded. A key that already exists is added
    /// again.
    void SetQueryVariable(std::string_view key, std::string_view value);

    /// Returns `text` with everything except letters, digits and "-._~" percent-encoded, in
    /// upper-case hexadecimal.
    static std::string UriEncode(std::string_view text);

private:
    std::string text_;
};

} // namespace Qx

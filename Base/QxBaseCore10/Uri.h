#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <string>
#include <string_view>

namespace Qx {

/// A URL as text. A plain value; may be read from several threads at once. It keeps any text, valid or not, and changes
/// it only by `SetQueryVariable`.
class QXBASECORE10_EXPORT Uri {
public:
    explicit Uri(std::string text);

    /// The URL. With `encoded`, every byte that may not stand in a URL (blanks, controls, non-ASCII, quotes
    /// and the like) is percent-encoded and all else, "%" included, is unchanged; without, the text as it is.
    std::string ToString(bool encoded) const;

    /// Appends the pair "key=value" to the query, before any fragment. All of `key`
    /// and `value` but letters, digits and "-._~" is percent-encoded. A key that is there already is added
    /// again.
    void SetQueryVariable(std::string_view key, std::string_view value);

    /// `text` with all but letters, digits and "-._~" percent-encoded, in upper-case hexadecimal.
    static std::string UriEncode(std::string_view text);

private:
    std::string text_;
};

} // namespace Qx

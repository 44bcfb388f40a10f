#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <string>
#include <string_view>

namespace Qx {

/// Converts UTF-8 to wide text: UTF-32, or UTF-16 where `wchar_t` has 16 bits. Each byte that is
/// not part of valid UTF-8 becomes U+FFFD. Throws only `std::bad_alloc`, when memory runs out.
/// Linear in the length of the text.
QXBASECORE10_EXPORT std::wstring ToIString(std::string_view text);

/// Converts wide text to UTF-8, the reverse of `ToIString`. Each unit that is not part of a valid
/// character becomes U+FFFD.
QXBASECORE10_EXPORT std::string ToHString(std::wstring_view text);

} // namespace Qx

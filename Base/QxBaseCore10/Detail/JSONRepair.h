#pragma once

#include <string>
#include <string_view>

namespace Qx::Detail {

/// Returns a repaired copy of `text`, in which everything that JSON's grammar allows, or would
/// allow if the encoding were valid, but the parser rejects, is replaced with something that the
/// parser accepts:
/// - an integer beyond 64 bits, or a number too large for a double, with a string of its digits
/// - in strings and keys, an escaped unpaired surrogate, and each byte that is not part of valid
///   UTF-8, with U+FFFD
///
/// Everything else is unchanged, so the parser still rejects what the grammar forbids. The result
/// ends with the zero bytes that the parser may read after the text. It is empty if there is
/// nothing to replace. Linear in the length of the text. Throws `std::bad_alloc` when memory runs
/// out.
std::string repairJSON(std::string_view text);

} // namespace Qx::Detail

#pragma once

#include <string>
#include <string_view>

namespace Qx::Detail {

/// The text with each value that JSON's grammar allows, or its bytes would but for their encoding, and that the parser
/// refuses all the same, replaced by one that it takes:
/// - an integer beyond 64 bits, or a number too large for a double: a string of its digits as they came
/// - an escaped surrogate without its other half, and each byte that is no part of UTF-8, in a string or a key: U+FFFD
///
/// All else stays as it is, so that what the grammar forbids is refused still. After the text come as many zero bytes
/// as the parser may read. Empty if there is nothing to replace. Linear in the length of the text. Throws
/// `std::bad_alloc`.
std::string mendJSON(std::string_view text);

} // namespace Qx::Detail

#pragma once

#include <cstddef>

namespace Qx::Detail {

/// Allocations from this size on come as a rule fresh from the system, as a mapping of their own; smaller ones are
/// soon served from memory that the process has used before.
inline constexpr std::size_t largePagesFrom = std::size_t{32} << 20;

/// Asks the system to back the `size` bytes at `memory` with large pages, if these are many enough. Each page that is
/// written first costs a page fault. Nothing but speed depends on whether the system agrees.
void preferLargePages(void* memory, std::size_t size);

} // namespace Qx::Detail

#pragma once

#include <cstddef>

namespace Qx::Detail {

/// The smallest size that is worth a system call. Allocations of this size or more usually get a
/// fresh mapping from the system; smaller ones soon reuse memory that the process has already
/// touched.
inline constexpr std::size_t largePagesFrom = std::size_t{32} << 20;

/// Asks the system to back the `size` bytes at `memory` with large pages, if `size` is at least
/// `largePagesFrom`. The first write to a page costs a page fault, and large pages mean fewer of
/// them. Whether the system complies affects only speed.
void preferLargePages(void* memory, std::size_t size);

} // namespace Qx::Detail

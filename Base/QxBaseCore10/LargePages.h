#pragma once

#include <cstddef>

namespace Qx::Detail {

/// Asks the system to back the `size` bytes at `memory` with large pages. What is first written costs a page fault for
/// each page, which takes longer than to parse what fits on it. Nothing but speed depends on whether the system
/// agrees. Does nothing for less than 32 MiB: only larger allocations are always a mapping of their own, so that the
/// wish ends with them and no other memory is concerned.
void preferLargePages(void* memory, std::size_t size);

} // namespace Qx::Detail

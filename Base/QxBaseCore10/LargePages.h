#pragma once

#include <cstddef>

namespace Qx::Detail {

/// Asks the system to back the `size` bytes at `memory` with large pages. What is first written costs a page fault for
/// each page, which takes longer than to parse what fits on it. Nothing but speed depends on whether the system
/// agrees. Does nothing for less than 32 MiB: that much the allocator as a rule has at hand, with its pages, while more
/// comes fresh from the system as a mapping of its own, and the wish ends with it.
void preferLargePages(void* memory, std::size_t size);

} // namespace Qx::Detail

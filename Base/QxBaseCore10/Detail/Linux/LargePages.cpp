#include "Base/QxBaseCore10/Detail/LargePages.h"

#include <memory>
#include <sys/mman.h>
#include <unistd.h>

namespace Qx::Detail {

void preferLargePages(void* memory, std::size_t size) {
    if (size < largePagesFrom)
        return;
    const auto pageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    if (std::align(pageSize, pageSize, memory, size))
        madvise(memory, size, MADV_HUGEPAGE);
}

} // namespace Qx::Detail

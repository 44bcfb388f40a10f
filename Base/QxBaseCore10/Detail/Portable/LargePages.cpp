#include "Base/QxBaseCore10/Detail/LargePages.h"

namespace Qx::Detail {

void preferLargePages(void*, std::size_t) {}

} // namespace Qx::Detail

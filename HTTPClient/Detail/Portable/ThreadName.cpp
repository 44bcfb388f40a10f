#include "HTTPClient/Detail/Process.h"

namespace Qx::Detail {

void nameThisThread(const std::string&) {}

} // namespace Qx::Detail

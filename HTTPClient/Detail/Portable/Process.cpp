#include "HTTPClient/Detail/Process.h"

#include <utility>

namespace Qx::Detail {

std::thread startThread(std::function<void()> run) {
    return std::thread(std::move(run));
}

long processId() {
    return 0;
}

} // namespace Qx::Detail

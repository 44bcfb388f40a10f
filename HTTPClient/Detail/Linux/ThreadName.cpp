#include "HTTPClient/Detail/Process.h"

#include <pthread.h>

namespace Qx::Detail {

void nameThisThread(const std::string& name) {
    // Linux accepts at most 15 bytes.
    pthread_setname_np(pthread_self(), name.substr(0, 15).c_str());
}

} // namespace Qx::Detail

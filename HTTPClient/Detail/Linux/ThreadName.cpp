#include "HTTPClient/Detail/Process.h"

#include <pthread.h>

namespace Qx::Detail {

void nameThisThread(const std::string& name) {
    // Linux takes no more than 15 bytes.
    pthread_setname_np(pthread_self(), name.substr(0, 15).c_str());
}

} // namespace Qx::Detail

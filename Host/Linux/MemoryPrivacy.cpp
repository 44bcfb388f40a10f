#include "Host/ProcessState.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace OrvaneHost {

void keepMemoryPrivate() {
    // A program that the system pipes core files into gets them whatever the limit.
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0);
}

} // namespace OrvaneHost

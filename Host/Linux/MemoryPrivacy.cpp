#include "Host/ProcessState.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace OrvaneHost {

void keepMemoryPrivate() {
    // The limit does not apply if the system pipes core dumps to a program; hence the prctl.
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0);
}

} // namespace OrvaneHost

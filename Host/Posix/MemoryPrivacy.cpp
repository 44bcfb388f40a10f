#include "Host/ProcessState.h"

#include <sys/resource.h>

namespace OrvaneHost {

void keepMemoryPrivate() {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

} // namespace OrvaneHost

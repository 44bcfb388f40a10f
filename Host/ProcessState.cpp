#include "Host/ProcessState.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace OrvaneHost {

void occupyStandardStreams() {
    int descriptor = 0;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (descriptor >= 0)
        close(descriptor);
}

void keepMemoryPrivate() {
    // A program that the system pipes core files into gets them whatever the limit.
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0);
}

} // namespace OrvaneHost

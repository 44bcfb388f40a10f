#include "Host/ProcessState.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace OrvaneHost {

std::vector<std::string> argumentsInUTF8(int argc, const char* const* argv) {
    return {argv + std::min(argc, 1), argv + argc};
}

void openClosedStandardStreams() {
    int descriptor = 0;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (descriptor >= 0)
        close(descriptor);
}

void setSignals() {
    std::signal(SIGPIPE, SIG_DFL); // Only output raises it.
    std::signal(SIGXFSZ, SIG_IGN);
}

} // namespace OrvaneHost

#include "Host/ProcessState.h"

namespace OrvaneHost {

void keepMemoryPrivate() {}

} // namespace OrvaneHost

#include "Base/QxBaseCore10/Utility.h"

#include <atomic>

namespace Qx::Utility {

namespace {

std::atomic<bool> indirectXRefProjectDetails = false;

} // namespace

bool indirectXRefProjectDetailsEnabled() {
    return indirectXRefProjectDetails;
}

void setIndirectXRefProjectDetailsEnabled(bool enabled) {
    indirectXRefProjectDetails = enabled;
}

} // namespace Qx::Utility

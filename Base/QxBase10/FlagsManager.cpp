#include "Base/QxBase10/FlagsManager.h"

namespace Qx {

FlagsManager& FlagsManager::get() {
    // Never destroyed: threads and destructors that run during process exit may still use it.
    static auto& manager = *new FlagsManager;
    return manager;
}

FlagsManager::~FlagsManager() = default;

bool FlagsManager::isFlagEnabled(const std::string& name, bool, int) const {
    const std::lock_guard lock(mutex_);
    return enabled_.contains(name);
}

void FlagsManager::setFlag(const std::string& name, bool enabled) {
    const std::lock_guard lock(mutex_);
    if (enabled)
        enabled_.insert(name);
    else
        enabled_.erase(name);
}

} // namespace Qx

#pragma once

#include "Base/QxBase10/qxbase10_export.h"

#include <mutex>
#include <set>
#include <string>

namespace Qx {

/// The process-wide feature flags, all off by default. All operations may be called from several
/// threads at once.
class QXBASE10_EXPORT FlagsManager {
public:
    /// Returns the process-wide manager, which is never destroyed.
    static FlagsManager& get();

    FlagsManager() = default;
    FlagsManager(const FlagsManager&) = delete;
    FlagsManager& operator=(const FlagsManager&) = delete;
    virtual ~FlagsManager();

    /// Returns whether the flag `name` is on. The other two arguments are ignored.
    virtual bool isFlagEnabled(const std::string& name, bool, int) const;

    /// Turns the flag `name` on or off.
    void setFlag(const std::string& name, bool enabled);

private:
    mutable std::mutex mutex_;
    std::set<std::string> enabled_;
};

} // namespace Qx

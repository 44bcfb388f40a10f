#pragma once

#include "Base/QxBase10/qxbase10_export.h"

#include <mutex>
#include <set>
#include <string>

namespace Qx {

/// The feature flags of the process, all off at first. All operations may be called from several threads at
/// once.
class QXBASE10_EXPORT FlagsManager {
public:
    /// The manager of the process, which lives as long as it.
    static FlagsManager& get();

    FlagsManager() = default;
    FlagsManager(const FlagsManager&) = delete;
    FlagsManager& operator=(const FlagsManager&) = delete;
    virtual ~FlagsManager();

    /// Whether the flag of that name is on. The two further arguments are accepted and change nothing.
    virtual bool isFlagEnabled(const std::string& name, bool, int) const;

    /// Turns the flag of that name on or off.
    void setFlag(const std::string& name, bool enabled);

private:
    mutable std::mutex mutex_;
    std::set<std::string> enabled_;
};

} // namespace Qx

#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace Qx {

/// A named set of options, with wide-string keys and values. The sets are process-wide and are
/// never destroyed. All operations may be called from several threads at once.
class QXBASECORE10_EXPORT ApplicationOptions {
public:
    /// Returns the set called `name`, never null. An empty set is created on first use. The name
    /// may be empty.
    static std::shared_ptr<ApplicationOptions> get(const std::string& name);

    /// Sets the value of `key`, replacing any previous one.
    void set(const std::wstring& key, const std::wstring& value);
    /// Removes `key`, if it is set.
    void unset(const std::wstring& key);

    /// If `key` is set, copies its value to `value` and returns true; otherwise leaves `value`
    /// unchanged and returns false.
    bool tryGet(const std::wstring& key, std::wstring& value) const;

private:
    mutable std::mutex mutex_;
    std::map<std::wstring, std::wstring> values_;
};

} // namespace Qx

#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace Qx {

/// A named set of options, wide key to wide value. The sets are process-wide and live as long as the process
/// or whoever holds one. All operations may be called from several threads at once.
class QXBASECORE10_EXPORT ApplicationOptions {
public:
    /// The set of that name, never null: it is created, empty, when it is first asked for. The empty name
    /// names a set like any other.
    static std::shared_ptr<ApplicationOptions> get(const std::string& name);

    /// Sets the key, in place of what it held.
    void set(const std::wstring& key, const std::wstring& value);
    /// Makes the key one that is not set.
    void unset(const std::wstring& key);

    /// Copies the value to `value` and gives true if the key is set; else leaves `value` as it is and gives
    /// false.
    bool tryGet(const std::wstring& key, std::wstring& value) const;

private:
    mutable std::mutex mutex_;
    std::map<std::wstring, std::wstring> values_;
};

} // namespace Qx

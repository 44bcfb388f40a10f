#include "Base/QxBaseCore10/ApplicationOptions.h"

namespace Qx {

std::shared_ptr<ApplicationOptions> ApplicationOptions::get(const std::string& name) {
    // Never destroyed: threads and destructors that run during process exit may still use them.
    static std::mutex mutex;
    static auto& sets = *new std::map<std::string, std::shared_ptr<ApplicationOptions>>;

    const std::lock_guard lock(mutex);
    std::shared_ptr<ApplicationOptions>& set = sets[name];
    if (!set)
        set = std::make_shared<ApplicationOptions>();
    return set;
}

void ApplicationOptions::set(const std::wstring& key, const std::wstring& value) {
    const std::lock_guard lock(mutex_);
    values_.insert_or_assign(key, value);
}

void ApplicationOptions::unset(const std::wstring& key) {
    const std::lock_guard lock(mutex_);
    values_.erase(key);
}

bool ApplicationOptions::tryGet(const std::wstring& key, std::wstring& value) const {
    const std::lock_guard lock(mutex_);
    const auto found = values_.find(key);
    if (found == values_.end())
        return false;
    value = found->second;
    return true;
}

} // namespace Qx

#include "Base/QxBaseCore10/CloudBrowser.h"

#include <mutex>
#include <utility>

namespace Qx {

namespace {

class NamedOptionsBrowser : public ICloudBrowser {
public:
    explicit NamedOptionsBrowser(std::string optionsName) : optionsName_(std::move(optionsName)) {}
    std::string currentOptionsName() const override { return optionsName_; }

private:
    const std::string optionsName_;
};

std::mutex installedMutex;

std::shared_ptr<ICloudBrowser>& installedBrowser() {
    // Never destroyed: threads and destructors that run during process exit may still use it.
    static auto& browser = *new std::shared_ptr<ICloudBrowser>(std::make_shared<NamedOptionsBrowser>(""));
    return browser;
}

} // namespace

ICloudBrowser::~ICloudBrowser() = default;

std::shared_ptr<ICloudBrowser> ICloudBrowser::get() {
    const std::lock_guard lock(installedMutex);
    return installedBrowser();
}

std::shared_ptr<ICloudBrowser> ICloudBrowser::install(std::shared_ptr<ICloudBrowser> browser) {
    if (!browser)
        browser = std::make_shared<NamedOptionsBrowser>("");
    const std::lock_guard lock(installedMutex);
    return std::exchange(installedBrowser(), std::move(browser));
}

std::shared_ptr<ICloudBrowser> ICloudBrowser::installOptionsName(const std::string& optionsName) {
    return install(std::make_shared<NamedOptionsBrowser>(optionsName));
}

} // namespace Qx

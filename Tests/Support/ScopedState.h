#pragma once

#include "Base/QxBase10/FlagsManager.h"
#include "Base/QxBaseCore10/Analytics.h"
#include "Base/QxBaseCore10/ApplicationOptions.h"
#include "Base/QxBaseCore10/CloudBrowser.h"
#include "Base/QxBaseCore10/Utility.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// State of the process that a test changes only as long as this lives. Made by the functions below.
class ScopedState {
public:
    explicit ScopedState(std::function<void()> restore) : restore_(std::move(restore)) {}
    ScopedState(const ScopedState&) = delete;
    ScopedState& operator=(const ScopedState&) = delete;
    ~ScopedState() { restore_(); }

private:
    const std::function<void()> restore_;
};

inline ScopedState scopedOption(const std::string& set, const std::wstring& key, const std::wstring& value) {
    Qx::ApplicationOptions::get(set)->set(key, value);
    return ScopedState([set, key] { Qx::ApplicationOptions::get(set)->unset(key); });
}

inline ScopedState scopedCurrentOptions(const std::string& name) {
    return ScopedState([before = Qx::ICloudBrowser::installOptionsName(name)] { Qx::ICloudBrowser::install(before); });
}

inline ScopedState scopedFlag(const std::string& name) {
    Qx::FlagsManager::get().setFlag(name, true);
    return ScopedState([name] { Qx::FlagsManager::get().setFlag(name, false); });
}

inline ScopedState scopedIndirectXRefs() {
    Qx::Utility::setIndirectXRefProjectDetailsEnabled(true);
    return ScopedState([] { Qx::Utility::setIndirectXRefProjectDetailsEnabled(false); });
}

inline ScopedState scopedEventSink(Qx::Analytics::EventSink sink) {
    return ScopedState(
        [before = Qx::Analytics::setEventSink(std::move(sink))] { Qx::Analytics::setEventSink(before); });
}

/// Keeps the usage events that are tracked meanwhile.
struct ScopedEvents {
    std::vector<Qx::Analytics::Report> tracked;
    const ScopedState sink =
        scopedEventSink([this](const Qx::Analytics::Report& event, bool) { tracked.push_back(event); });
};

#pragma once

#include "Base/QxBase10/FlagsManager.h"
#include "Base/QxBaseCore10/Analytics.h"
#include "Base/QxBaseCore10/ApplicationOptions.h"
#include "Base/QxBaseCore10/CloudBrowser.h"
#include "Base/QxBaseCore10/Utility.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// State of the process that a test changes only as long as this or a copy lives. An empty one changes nothing.
using ScopedState = std::shared_ptr<void>;

inline ScopedState restoredBy(std::function<void()> restore) {
    return {nullptr, [restore = std::move(restore)](void*) { restore(); }};
}

inline ScopedState scopedOption(const std::string& set, const std::wstring& key, const std::wstring& value) {
    Qx::ApplicationOptions::get(set)->set(key, value);
    return restoredBy([set, key] { Qx::ApplicationOptions::get(set)->unset(key); });
}

inline ScopedState scopedCurrentOptions(const std::string& name) {
    return restoredBy([before = Qx::ICloudBrowser::installOptionsName(name)] { Qx::ICloudBrowser::install(before); });
}

inline ScopedState scopedFlag(const std::string& name) {
    Qx::FlagsManager::get().setFlag(name, true);
    return restoredBy([name] { Qx::FlagsManager::get().setFlag(name, false); });
}

inline ScopedState scopedIndirectXRefs() {
    Qx::Utility::setIndirectXRefProjectDetailsEnabled(true);
    return restoredBy([] { Qx::Utility::setIndirectXRefProjectDetailsEnabled(false); });
}

inline ScopedState scopedEventSink(Qx::Analytics::EventSink sink) {
    return restoredBy([before = Qx::Analytics::setEventSink(std::move(sink))] { Qx::Analytics::setEventSink(before); });
}

/// Keeps the usage events that are tracked meanwhile.
struct ScopedEvents {
    ScopedEvents() = default;
    ScopedEvents(const ScopedEvents&) = delete;
    ScopedEvents& operator=(const ScopedEvents&) = delete;

    std::vector<Qx::Analytics::Report> tracked;
    const ScopedState sink =
        scopedEventSink([this](const Qx::Analytics::Report& event, bool) { tracked.push_back(event); });
};

#include "Testing/ScopedState.h"

#include "Base/QxBase10/FlagsManager.h"
#include "Base/QxBaseCore10/ApplicationOptions.h"
#include "Base/QxBaseCore10/CloudBrowser.h"
#include "Base/QxBaseCore10/Utility.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace Orvane::Testing {

ScopedState::ScopedState(std::function<void()> restore) : restore_(std::move(restore)) {}

ScopedState::ScopedState(ScopedState&& other) noexcept : restore_(std::exchange(other.restore_, nullptr)) {}

ScopedState::~ScopedState() {
    if (restore_)
        restore_();
}

ScopedState scopedOption(const std::string& set, const std::wstring& key, const std::wstring& value) {
    const auto options = Qx::ApplicationOptions::get(set);
    std::wstring before;
    const bool wasSet = options->tryGet(key, before);
    options->set(key, value);
    return ScopedState([options, key, before, wasSet] {
        if (wasSet)
            options->set(key, before);
        else
            options->unset(key);
    });
}

ScopedState scopedCurrentOptions(const std::string& name) {
    return ScopedState([before = Qx::ICloudBrowser::installOptionsName(name)] { Qx::ICloudBrowser::install(before); });
}

ScopedState scopedFlag(const std::string& name) {
    Qx::FlagsManager& flags = Qx::FlagsManager::get();
    const bool before = flags.isFlagEnabled(name, true, 0);
    flags.setFlag(name, true);
    return ScopedState([&flags, name, before] { flags.setFlag(name, before); });
}

ScopedState scopedIndirectXRefProjectDetails() {
    const bool before = Qx::Utility::indirectXRefProjectDetailsEnabled();
    Qx::Utility::setIndirectXRefProjectDetailsEnabled(true);
    return ScopedState([before] { Qx::Utility::setIndirectXRefProjectDetailsEnabled(before); });
}

ScopedState scopedEventSink(Qx::Analytics::EventSink sink) {
    return ScopedState(
        [before = Qx::Analytics::setEventSink(std::move(sink))] { Qx::Analytics::setEventSink(before); });
}

struct CapturedEvents::Events {
    std::mutex mutex;
    std::condition_variable tracked;
    std::vector<Qx::Analytics::Report> all;
};

CapturedEvents::CapturedEvents()
    : events_(std::make_shared<Events>()),
      sink_(scopedEventSink([events = events_](const Qx::Analytics::Report& event, bool) {
          const std::lock_guard lock(events->mutex);
          events->all.push_back(event);
          events->tracked.notify_all();
      })) {}

std::vector<Qx::Analytics::Report> CapturedEvents::all() const {
    const std::lock_guard lock(events_->mutex);
    return events_->all;
}

bool CapturedEvents::waitFor(std::size_t count, std::chrono::milliseconds time) const {
    std::unique_lock lock(events_->mutex);
    // Longer than any test waits, but short enough not to overflow the clock.
    const std::chrono::milliseconds atMost = std::min<std::chrono::milliseconds>(time, std::chrono::hours(24));
    return events_->tracked.wait_for(lock, atMost, [&] { return events_->all.size() >= count; });
}

void CapturedEvents::clear() {
    const std::lock_guard lock(events_->mutex);
    events_->all.clear();
}

} // namespace Orvane::Testing

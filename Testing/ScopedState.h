#pragma once

#include "Base/QxBaseCore10/Analytics.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Orvane::Testing {

/// A change to the state of the process that ends with this object. Objects that change the same state have to end in
/// the reverse order of their construction. One that is moved from, or default-constructed, changes nothing.
class [[nodiscard]] ScopedState {
public:
    ScopedState() = default;
    explicit ScopedState(std::function<void()> restore);
    ScopedState(ScopedState&& other) noexcept;
    ScopedState& operator=(ScopedState&&) = delete;
    ~ScopedState();

private:
    std::function<void()> restore_;
};

/// An option of the options set `set` has that value.
ScopedState scopedOption(const std::string& set, const std::wstring& key, const std::wstring& value);

/// The current options set has that name.
ScopedState scopedCurrentOptions(const std::string& name);

/// The flag of that name is on.
ScopedState scopedFlag(const std::string& name);

/// Full assemblies are asked for with the details of projects that they reach only indirectly.
ScopedState scopedIndirectXRefProjectDetails();

/// Usage events go to `sink`.
ScopedState scopedEventSink(Qx::Analytics::EventSink sink);

/// Keeps the usage events that are tracked while it lives, from any thread.
class CapturedEvents {
public:
    CapturedEvents();
    CapturedEvents(const CapturedEvents&) = delete;
    CapturedEvents& operator=(const CapturedEvents&) = delete;

    std::vector<Qx::Analytics::Report> all() const;

    /// Waits until there are at least `count`, since an event comes after the callback of its request. Returns whether
    /// there are within the time.
    bool waitFor(std::size_t count, std::chrono::milliseconds time = std::chrono::seconds(5)) const;

    void clear();

private:
    struct Events;

    const std::shared_ptr<Events> events_; // Shared with the sink, which another thread may still be calling.
    const ScopedState sink_;
};

} // namespace Orvane::Testing

#pragma once

#include "Base/QxBaseCore10/Analytics.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Orvane::Testing {

/// A change to process-wide state that this object's destructor undoes. Objects that change the
/// same state must be destroyed in the reverse order of their construction. A moved-from or
/// default-constructed object does nothing.
class [[nodiscard]] ScopedState {
public:
    ScopedState() = default;
    /// Calls `restore` when it is destroyed.
    explicit ScopedState(std::function<void()> restore);
    /// Takes over the change from `other`.
    ScopedState(ScopedState&& other) noexcept;
    ScopedState& operator=(ScopedState&&) = delete;
    ~ScopedState();

private:
    std::function<void()> restore_;
};

/// Sets an option of the options set `set`.
ScopedState scopedOption(const std::string& set, const std::wstring& key, const std::wstring& value);

/// Makes the options set `name` the current one.
ScopedState scopedCurrentOptions(const std::string& name);

/// Turns the flag `name` on.
ScopedState scopedFlag(const std::string& name);

/// Makes requests for full assemblies also ask for details of the projects that they reference only
/// indirectly.
ScopedState scopedIndirectXRefProjectDetails();

/// Sends usage events to `sink`.
ScopedState scopedEventSink(Qx::Analytics::EventSink sink);

/// Captures the usage events that are tracked, on any thread, during its lifetime.
class CapturedEvents {
public:
    CapturedEvents();
    CapturedEvents(const CapturedEvents&) = delete;
    CapturedEvents& operator=(const CapturedEvents&) = delete;

    /// Returns the events so far, in order.
    std::vector<Qx::Analytics::Report> all() const;

    /// Waits until there are at least `count` events, since an event is tracked only after the
    /// callback of its request has returned. Returns false if there are fewer after `time`.
    bool waitFor(std::size_t count, std::chrono::milliseconds time = std::chrono::seconds(5)) const;

    /// Forgets the events so far.
    void clear();

private:
    struct Events;

    const std::shared_ptr<Events> events_; // Shared with the sink, which another thread may still be calling.
    const ScopedState sink_;
};

} // namespace Orvane::Testing

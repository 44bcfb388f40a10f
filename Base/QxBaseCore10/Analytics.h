#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <functional>
#include <string>
#include <unordered_map>

/// Usage events. May be used from several threads at once.
namespace Qx::Analytics {

/// One usage event.
struct QXBASECORE10_EXPORT Report {
    std::wstring eventName;
    std::unordered_map<std::wstring, std::wstring> properties;
};

/// Takes an event during the call, in the thread that tracks it. `now` asks for the event to be sent at once
/// rather than with the next batch.
using EventSink = std::function<void(const Report& report, bool now)>;

/// Installs the sink of the process and returns the one before it. An empty sink drops events, as at first. A plug-in
/// has to install that again before it is unloaded, as with an `ICloudBrowser`: the sink's code goes with it.
QXBASECORE10_EXPORT EventSink setEventSink(EventSink sink);

/// Hands the event to the sink, or drops it where there is none. What the sink throws passes through.
QXBASECORE10_EXPORT void trackEvent(Report& report, bool now);

} // namespace Qx::Analytics

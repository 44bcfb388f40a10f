#pragma once

#include "Base/QxBaseCore10/qxbasecore10_export.h"

#include <functional>
#include <string>
#include <unordered_map>

/// Usage events. May be used from several threads at once.
namespace Qx::Analytics {

/// One usage event.
struct QXBASECORE10_EXPORT Report {
    std::wstring eventName;                                    ///< What happened, such as "FullAssembly".
    std::unordered_map<std::wstring, std::wstring> properties; ///< The event's details, by name.
};

/// Receives each event, in the thread that tracks it; the event is valid only during the call.
/// `now` means that the event should be sent at once rather than with the next batch.
using EventSink = std::function<void(const Report& report, bool now)>;

/// Installs the process-wide sink and returns the previous one. An empty sink, the default, drops
/// events. A plug-in must restore the previous sink before it is unloaded, since the code of its
/// own sink is unloaded with it; the same applies to an `ICloudBrowser`.
QXBASECORE10_EXPORT EventSink setEventSink(EventSink sink);

/// Passes the event to the sink, or drops it if there is none. Exceptions from the sink propagate.
QXBASECORE10_EXPORT void trackEvent(Report& report, bool now);

} // namespace Qx::Analytics

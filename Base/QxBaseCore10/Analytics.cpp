#include "Base/QxBaseCore10/Analytics.h"

#include <mutex>
#include <utility>

namespace Qx::Analytics {

namespace {

std::mutex sinkMutex;

EventSink& installedSink() {
    // Never destroyed: threads and destructors that run during process exit may still track events.
    static auto& sink = *new EventSink;
    return sink;
}

EventSink currentSink() {
    const std::lock_guard lock(sinkMutex);
    return installedSink();
}

} // namespace

EventSink setEventSink(EventSink sink) {
    const std::lock_guard lock(sinkMutex);
    return std::exchange(installedSink(), std::move(sink));
}

void trackEvent(Report& report, bool now) {
    // The sink runs outside the lock, so that it may install another one or track an event itself.
    if (const EventSink sink = currentSink())
        sink(report, now);
}

} // namespace Qx::Analytics

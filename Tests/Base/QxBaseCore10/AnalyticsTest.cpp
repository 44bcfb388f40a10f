#include "Base/QxBaseCore10/Analytics.h"

#include "Tests/Support/ScopedState.h"

#include <gtest/gtest.h>

namespace {

TEST(Analytics, HandsTheEventToTheSinkOfTheMoment) {
    Qx::Analytics::Report report{L"event", {{L"key", L"value"}}};
    Qx::Analytics::trackEvent(report, true);
    ScopedEvents outer;
    {
        ScopedEvents inner;
        Qx::Analytics::trackEvent(report, false);
        ASSERT_EQ(inner.tracked.size(), 1U);
        EXPECT_EQ(inner.tracked.front().eventName, L"event");
        EXPECT_EQ(inner.tracked.front().properties.at(L"key"), L"value");
        EXPECT_FALSE(inner.allNow);
    }
    EXPECT_TRUE(outer.tracked.empty());
    Qx::Analytics::trackEvent(report, true);
    EXPECT_EQ(outer.tracked.size(), 1U);
}

} // namespace

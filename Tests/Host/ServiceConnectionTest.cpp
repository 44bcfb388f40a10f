#include "Host/ServiceConnection.h"

#include "Tests/Support/FailingCalls.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

TEST(ServiceConnection, GetsNoEventsIfItCannotBeMade) {
    setenv("ORVANE_TOKEN", "t", 1);
    OrvaneHost::CommandLine commandLine;
    commandLine.service = "https://service.example";
    {
        const ScopedState scarcity = FailingCalls::scopedThreadsLeft(1);
        EXPECT_THROW(OrvaneHost::ServiceConnection connection(commandLine), std::runtime_error);
    }
    EXPECT_FALSE(Qx::Analytics::setEventSink({})) << "nobody is to be told";
    unsetenv("ORVANE_TOKEN");
}

} // namespace

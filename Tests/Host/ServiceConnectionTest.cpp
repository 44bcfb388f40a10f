#include "Host/ServiceConnection.h"

#include "Tests/Support/FailingCalls.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

TEST(ServiceConnection, ThatIsNotMadeGetsNoEvents) {
    setenv("ORVANE_TOKEN", "t", 1);
    OrvaneHost::CommandLine commandLine;
    commandLine.service = "https://service.example";
    const int before = FailingCalls::threadsLeft.exchange(1);
    EXPECT_THROW(OrvaneHost::ServiceConnection connection(commandLine), std::runtime_error);
    FailingCalls::threadsLeft = before;
    EXPECT_FALSE(Qx::Analytics::setEventSink({})) << "nobody is to be told";
    unsetenv("ORVANE_TOKEN");
}

} // namespace

#include "Base/QxBase10/FlagsManager.h"

#include "Tests/Support/ScopedState.h"

#include <gtest/gtest.h>

namespace {

TEST(FlagsManager, FlagsAreOffUntilSetAndTheFurtherArgumentsChangeNothing) {
    Qx::FlagsManager& flags = Qx::FlagsManager::get();
    EXPECT_FALSE(flags.isFlagEnabled("a-flag", true, 0));
    {
        const ScopedState flag = scopedFlag("a-flag");
        EXPECT_TRUE(flags.isFlagEnabled("a-flag", true, 0));
        EXPECT_TRUE(flags.isFlagEnabled("a-flag", false, 7));
        EXPECT_FALSE(flags.isFlagEnabled("a-Flag", true, 1));
    }
    EXPECT_FALSE(flags.isFlagEnabled("a-flag", true, 1));
}

} // namespace

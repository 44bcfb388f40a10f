#include "Base/QxBaseCore10/CloudBrowser.h"

#include "Tests/Support/ScopedState.h"

#include <gtest/gtest.h>

namespace {

TEST(CloudBrowser, IsNeverNullAndNamesTheInstalledSet) {
    EXPECT_EQ(Qx::ICloudBrowser::get()->currentOptionsName(), "");
    {
        const ScopedState current = scopedCurrentOptions("main");
        EXPECT_EQ(Qx::ICloudBrowser::get()->currentOptionsName(), "main");
        const auto before = Qx::ICloudBrowser::install(nullptr);
        EXPECT_EQ(Qx::ICloudBrowser::get()->currentOptionsName(), "");
        EXPECT_EQ(before->currentOptionsName(), "main") << "who held the object before may go on to use it";
    }
    EXPECT_EQ(Qx::ICloudBrowser::get()->currentOptionsName(), "");
}

} // namespace

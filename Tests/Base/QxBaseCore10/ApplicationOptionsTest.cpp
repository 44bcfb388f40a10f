#include "Base/QxBaseCore10/ApplicationOptions.h"

#include <gtest/gtest.h>
#include <thread>

namespace {

TEST(ApplicationOptions, AreKeptApartByNameAndBearReadersBesideWriters) {
    const auto options = Qx::ApplicationOptions::get("threads");
    std::thread writer([&] {
        for (int i = 0; i < 1000; ++i)
            options->set(L"key", std::to_wstring(i));
    });
    std::wstring beside;
    for (int i = 0; i < 1000; ++i)
        options->tryGet(L"key", beside);
    writer.join();
    std::wstring value = L"before";
    EXPECT_FALSE(Qx::ApplicationOptions::get("")->tryGet(L"key", value));
    EXPECT_EQ(value, L"before") << "a key that is not set leaves the text alone";
    EXPECT_TRUE(Qx::ApplicationOptions::get("threads")->tryGet(L"key", value));
    EXPECT_EQ(value, L"999");
    options->unset(L"key");
    EXPECT_FALSE(options->tryGet(L"key", value));
}

} // namespace

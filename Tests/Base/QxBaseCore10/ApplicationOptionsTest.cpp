#include "Base/QxBaseCore10/ApplicationOptions.h"

#include "Tests/Support/ScopedState.h"

#include <gtest/gtest.h>
#include <thread>

namespace {

TEST(ApplicationOptions, SetsAreKeptApartByName) {
    const ScopedState one = scopedOption("one", L"key", L"1");
    std::wstring value = L"before";
    EXPECT_TRUE(Qx::ApplicationOptions::get("one")->tryGet(L"key", value));
    EXPECT_EQ(value, L"1");
    EXPECT_FALSE(Qx::ApplicationOptions::get("")->tryGet(L"key", value));
    EXPECT_EQ(value, L"1") << "a key that is not set leaves the text alone";
}

TEST(ApplicationOptions, BearReadersBesideWriters) {
    const auto options = Qx::ApplicationOptions::get("threads");
    std::thread writer([&] {
        for (int i = 0; i < 1000; ++i)
            options->set(L"key", std::to_wstring(i));
    });
    std::wstring value;
    for (int i = 0; i < 1000; ++i)
        Qx::ApplicationOptions::get("threads")->tryGet(L"key", value);
    writer.join();
    EXPECT_TRUE(options->tryGet(L"key", value));
    EXPECT_EQ(value, L"999");
    options->unset(L"key");
    EXPECT_FALSE(options->tryGet(L"key", value));
}

} // namespace

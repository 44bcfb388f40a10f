#include <dlfcn.h>
#include <gtest/gtest.h>
#include <malloc.h>

namespace {

bool loadUseAndUnload() {
    void* const plugin = dlopen(PLUGIN, RTLD_NOW | RTLD_LOCAL);
    EXPECT_TRUE(plugin) << dlerror();
    const auto open = reinterpret_cast<bool (*)()>(dlsym(plugin, "openAssembly"));
    const bool hasOpened = open && open();
    return dlclose(plugin) == 0 && hasOpened;
}

TEST(Plugin, MayBeLoadedUsedAndUnloadedRepeatedly) {
    constexpr int rounds = 200;
    ASSERT_TRUE(loadUseAndUnload());
    const std::size_t before = mallinfo2().uordblks;
    for (int round = 0; round < rounds; ++round)
        ASSERT_TRUE(loadUseAndUnload()) << round;
    // Objects that may be used until the process ends are never destroyed, so the heap grows a
    // little.
    EXPECT_LT(mallinfo2().uordblks, before + std::size_t{rounds} * 1024);
}

} // namespace

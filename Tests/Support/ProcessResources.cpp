#include "Tests/Support/ProcessResources.h"

#include <chrono>
#include <gtest/gtest.h>
#include <thread>

void expectNoMore(std::ptrdiff_t (*count)(), std::ptrdiff_t before) {
    for (int i = 0; i < 2000 && count() > before; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_LE(count(), before);
}

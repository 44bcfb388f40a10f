#pragma once

#include "Tests/Support/Allocations.h"

#include <gtest/gtest.h>
#include <new>

/// How an operation ended while one of its allocations was made to fail.
struct WithoutMemory {
    bool hasFailed = false; ///< Whether the operation reached that allocation.
    bool hasThrown = false; ///< Whether the operation threw `std::bad_alloc`.
};

/// Calls `attempt` repeatedly, with a function that runs an operation while one allocation fails:
/// first the operation's first allocation, then its second, and so on until none fails. Returns the
/// number of allocations. A run without failures comes before these, for what is allocated only
/// once per process. No attempt may leak.
template <class Attempt>
std::size_t failEachAllocation(Attempt attempt) {
    attempt([](auto operation) {
        operation();
        return WithoutMemory();
    });
    for (std::size_t number = 0;; ++number) {
        Allocations allocations;
        WithoutMemory ended;
        attempt([&](auto operation) {
            allocations.fail(number);
            try {
                operation();
            } catch (const std::bad_alloc&) {
                ended.hasThrown = true;
            }
            ended.hasFailed = allocations.stopFailing();
            return ended;
        });
        if (!ended.hasFailed)
            return number;
        EXPECT_EQ(allocations.alive(), 0) << "leaked after failing allocation " << number;
    }
}

/// Does the same for an operation that has to throw whenever an allocation fails.
template <class Operation>
std::size_t expectThrownEachTime(Operation operation) {
    return failEachAllocation([&](auto run) {
        const WithoutMemory ended = run(operation);
        EXPECT_EQ(ended.hasThrown, ended.hasFailed);
    });
}

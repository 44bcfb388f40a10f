#pragma once

#include "Tests/Support/Allocations.h"

#include <gtest/gtest.h>
#include <new>

/// How an operation ended of which one allocation was to fail.
struct WithoutMemory {
    bool hasFailed = false; ///< Whether the operation came as far as that allocation.
    bool hasThrown = false; ///< Whether `std::bad_alloc` came out of it.
};

/// Calls `attempt` with a function that runs an operation with one allocation failing: first the operation's first,
/// then its second, and so on until it gets all that it asks for. Returns how many there were. What is made once in a
/// process is made before the first, and no attempt may leak.
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
        EXPECT_EQ(allocations.alive(), 0) << "leaked by failure " << number;
    }
}

/// The same for an operation that has to throw whenever it gets less than it asks for.
template <class Operation>
std::size_t expectThrownEachTime(Operation operation) {
    return failEachAllocation([&](auto run) {
        const WithoutMemory ended = run(operation);
        EXPECT_EQ(ended.hasThrown, ended.hasFailed);
    });
}

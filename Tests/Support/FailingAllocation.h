#pragma once

#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <new>

/// Makes one allocation fail while it lives: the `number`th from now, counted from 0, of this thread or of the threads
/// of a name. The program's operator new is replaced for that.
class FailingAllocation {
public:
    explicit FailingAllocation(std::size_t number);
    FailingAllocation(std::size_t number, const char* threadName);
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    /// True once it has failed.
    bool hasFailed() const;

    /// How many allocations are alive in the whole program.
    static std::int64_t countAlive();

private:
    const bool isHere_;
};

struct WithoutMemory {
    bool hasFailed = false; ///< Whether the operation came as far as the allocation that fails.
    bool hasThrown = false; ///< Whether `std::bad_alloc` came out of it.
};

/// Runs `operation` with one allocation failing.
template <class Operation>
WithoutMemory runWithoutMemory(std::size_t number, Operation operation) {
    const FailingAllocation failing(number);
    try {
        operation();
        return {failing.hasFailed(), false};
    } catch (const std::bad_alloc&) {
        return {failing.hasFailed(), true};
    }
}

/// Runs `operation` with its first allocation failing, then its second, and so on until it gets all that it asks for,
/// and calls `check` after each failure with whether an exception came out. Gives the number of failures. What is made
/// once in a process is made before the first.
template <class Operation, class Check>
std::size_t failEachAllocation(Operation operation, Check check) {
    operation();
    for (std::size_t number = 0;; ++number) {
        const std::int64_t aliveBefore = FailingAllocation::countAlive();
        const auto [hasFailed, hasThrown] = runWithoutMemory(number, operation);
        if (!hasFailed)
            return number;
        EXPECT_EQ(FailingAllocation::countAlive(), aliveBefore) << "leaked by failure " << number;
        check(hasThrown);
    }
}

#pragma once

#include <cstddef>
#include <cstdint>

/// Counts the allocations of the whole program while it lives, and lets one fail if it is told to. The program's
/// operator new is replaced for that. One at a time.
class Allocations {
public:
    Allocations();
    Allocations(const Allocations&) = delete;
    Allocations& operator=(const Allocations&) = delete;
    ~Allocations();

    /// Lets the `number`th allocation from now fail, counted from 0, of this thread or of the threads of that name.
    void fail(std::size_t number, const char* threadName = nullptr);

    /// Lets none fail any more, and returns whether one has.
    bool stopFailing();

    /// How many there have been.
    std::int64_t made() const;

    /// How many more have been made than released.
    std::int64_t alive() const;
};

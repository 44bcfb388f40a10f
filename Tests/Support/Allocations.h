#pragma once

#include <cstddef>
#include <cstdint>

/// While it exists, counts the allocations of the whole program, and can make one of them fail.
/// Works by replacing the program's operator new. At most one object may exist at a time.
class Allocations {
public:
    Allocations();
    Allocations(const Allocations&) = delete;
    Allocations& operator=(const Allocations&) = delete;
    ~Allocations();

    /// Makes the `number`th allocation from now, counted from 0, fail: of this thread, or of the
    /// threads named `threadName`.
    void fail(std::size_t number, const char* threadName = nullptr);

    /// Stops making allocations fail, and returns whether one has failed.
    bool stopFailing();

    /// The number of allocations made.
    std::int64_t made() const;

    /// The number of allocations made and not released.
    std::int64_t alive() const;
};

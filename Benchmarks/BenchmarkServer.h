#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace OrvaneBenchmarks {

/// An HTTP server on a loopback port that answers as fast as it can, on a thread of its own which keeps off the core
/// of the thread that starts it, if there is another.
class BenchmarkServer {
public:
    /// Of the answer to "/large", which ends with the time at which its last bytes were sent.
    static constexpr std::size_t largeBodyBytes = std::size_t{30} << 20;
    /// The time stands there in decimal digits: the nanoseconds of `std::chrono::steady_clock`.
    static constexpr std::size_t timeDigits = 20;

    BenchmarkServer();
    BenchmarkServer(const BenchmarkServer&) = delete;
    BenchmarkServer& operator=(const BenchmarkServer&) = delete;
    ~BenchmarkServer();

    /// The address of a small answer.
    std::string smallAddress() const;
    /// The address of the large one.
    std::string largeAddress() const;

private:
    class Loop;
    const std::unique_ptr<Loop> loop_;
};

} // namespace OrvaneBenchmarks

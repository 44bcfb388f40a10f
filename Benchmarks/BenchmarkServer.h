#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace OrvaneBenchmarks {

/// An HTTP server on a loopback port that answers as fast as it can, on a thread of its own. If
/// there is another core, that thread does not run on the core of the thread that starts the
/// server.
class BenchmarkServer {
public:
    /// The size of the answer to "/large". Its last bytes are the time at which they were sent.
    static constexpr std::size_t largeBodyBytes = std::size_t{30} << 20;
    /// The number of decimal digits of that time, in nanoseconds of `std::chrono::steady_clock`.
    static constexpr std::size_t timeDigits = 20;

    BenchmarkServer();
    BenchmarkServer(const BenchmarkServer&) = delete;
    BenchmarkServer& operator=(const BenchmarkServer&) = delete;
    ~BenchmarkServer();

    /// The URL of a small answer.
    std::string smallAddress() const;
    /// The URL of the large answer.
    std::string largeAddress() const;

private:
    class Loop;
    const std::unique_ptr<Loop> loop_;
};

} // namespace OrvaneBenchmarks

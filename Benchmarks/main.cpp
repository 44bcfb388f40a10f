#include <benchmark/benchmark.h>
#include <latch>
#include <string_view>
#include <thread>

// Takes the options of Google Benchmark and, first, --second-thread. With a second thread in the process, as in a
// host, reference counts and the heap's locks are atomic, which they are not without.
int main(int argc, char** argv) {
    const bool hasSecondThread = argc > 1 && std::string_view(argv[1]) == "--second-thread";
    std::latch done(1);
    std::thread second;
    if (hasSecondThread) {
        second = std::thread([&] { done.wait(); });
        --argc;
        ++argv;
    }
    benchmark::Initialize(&argc, argv);
    const bool isUnderstood = !benchmark::ReportUnrecognizedArguments(argc, argv);
    if (isUnderstood)
        benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    done.count_down();
    if (second.joinable())
        second.join();
    return isUnderstood ? 0 : 2;
}

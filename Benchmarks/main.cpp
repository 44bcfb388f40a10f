#include <algorithm>
#include <benchmark/benchmark.h>
#include <latch>
#include <string_view>
#include <thread>

// Accepts the options of Google Benchmark, and --second-thread. Reference counts and the heap's
// locks are atomic only if the process has a second thread, as a host application does.
int main(int argc, char** argv) {
    char** const end =
        std::remove_if(argv, argv + argc, [](std::string_view argument) { return argument == "--second-thread"; });
    const bool hasSecondThread = end != argv + argc;
    argc = static_cast<int>(end - argv);
    std::latch done(1);
    std::thread second;
    if (hasSecondThread)
        second = std::thread([&] { done.wait(); });
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

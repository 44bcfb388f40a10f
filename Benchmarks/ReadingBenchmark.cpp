#include "Benchmarks/AssemblyBody.h"
#include "Benchmarks/Checksum.h"
#include "Benchmarks/MemoryMeter.h"
#include "Benchmarks/Readers.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <map>
#include <simdjson.h>
#include <stdexcept>
#include <type_traits>

namespace OrvaneBenchmarks {

namespace {

struct Sample {
    Qx::HTTPResponse response;
    std::size_t checksum = 0;
};

const Sample& sampleOf(std::size_t files) {
    static std::map<std::size_t, Sample> samples;
    Sample& sample = samples[files];
    if (sample.checksum == 0) {
        sample.response = Qx::HTTPResponse(200, makeAssemblyBody(files));
        sample.checksum = checksum(readByHand(sample.response));
    }
    return sample;
}

// No road: the parse that the roads (a) and (c) begin with.
std::size_t parseOnly(const Qx::HTTPResponse& response) {
    const std::string_view body = response.getBody();
    simdjson::dom::parser parser;
    return simdjson::dom::object(parser.parse(body.data(), body.size(), false)).size();
}

// In seconds, from the body to the records. To destroy the records is no part of it.
template <auto road>
double timeOf(const Qx::HTTPResponse& response) {
    const auto start = std::chrono::steady_clock::now();
    auto records = road(response);
    benchmark::DoNotOptimize(records);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    return time.count();
}

// Beside the timed runs, once for each road and sample: that it reads the same as the others, and its memory.
template <auto road>
MemoryUse checkAndMeasure(const Sample& sample) {
    if constexpr (!std::is_integral_v<decltype(road(sample.response))>)
        if (checksum(road(sample.response)) != sample.checksum)
            throw std::logic_error("the roads differ in what they read");
    return measureMemory([&] { road(sample.response); });
}

template <auto road>
void read(benchmark::State& state) {
    const Sample& sample = sampleOf(static_cast<std::size_t>(state.range(0)));
    static std::map<const Sample*, MemoryUse> uses;
    if (!uses.contains(&sample))
        uses[&sample] = checkAndMeasure<road>(sample);
    // Warms up: a virtual machine gives free memory back to its host after a while, and the next to use it pays.
    timeOf<road>(sample.response);
    for ([[maybe_unused]] const auto& iteration : state)
        state.SetIterationTime(timeOf<road>(sample.response));

    const MemoryUse use = uses[&sample];
    const auto bytes = static_cast<double>(sample.response.getBody().size());
    state.counters["files"] = static_cast<double>(state.range(0));
    state.counters["bodyBytes"] = bytes;
    state.counters["allocations"] = static_cast<double>(use.allocations);
    // The body lies in memory too while it is read.
    state.counters["peakOverBody"] = 1 + static_cast<double>(use.peakBytes) / bytes;
}

void withSizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(100)->Arg(1'000)->Arg(10'000)->Arg(100'000)->UseManualTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK(read<readWithLibrary>)->Name("read/library")->Apply(withSizes);
BENCHMARK(read<parseOnly>)->Name("read/parse")->Apply(withSizes);
BENCHMARK(read<readByHand>)->Name("read/hand")->Apply(withSizes);
BENCHMARK(read<readWithNlohmann>)->Name("read/nlohmann")->Apply(withSizes);

} // namespace

} // namespace OrvaneBenchmarks

#include "Benchmarks/AssemblyBody.h"
#include "Benchmarks/MemoryMeter.h"
#include "Benchmarks/Readers.h"

#include <benchmark/benchmark.h>
#include <boost/algorithm/string/replace.hpp>
#include <chrono>
#include <map>
#include <simdjson.h>
#include <stdexcept>
#include <type_traits>

namespace OrvaneBenchmarks {

namespace {

// Odd titles begin with half an emoji, which the parser rejects.
template <bool hasOddTitles>
const Qx::HTTPResponse& responseOf(std::size_t files) {
    static std::map<std::size_t, Qx::HTTPResponse> responses;
    const auto found = responses.find(files);
    if (found != responses.end())
        return found->second;
    std::string body = makeAssemblyBody(files);
    if (hasOddTitles)
        boost::replace_all(body, R"("title":")", R"("title":"\ud83d)");
    return responses.emplace(files, Qx::HTTPResponse(200, std::move(body))).first->second;
}

// Only parses, which is how both the library and the hand-written reader begin.
std::size_t parseOnly(const Qx::HTTPResponse& response) {
    const std::string_view body = response.getBody();
    simdjson::dom::parser parser;
    return simdjson::dom::object(parser.parse(body.data(), body.size(), false)).size();
}

// The time from the body to the records, in seconds, without the destruction of the records.
template <auto reader>
double timeOf(const Qx::HTTPResponse& response) {
    const auto start = std::chrono::steady_clock::now();
    auto records = reader(response);
    benchmark::DoNotOptimize(records);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    return time.count();
}

template <auto reader, bool hasOddTitles = false>
void read(benchmark::State& state) {
    const Qx::HTTPResponse& response = responseOf<hasOddTitles>(static_cast<std::size_t>(state.range(0)));
    static std::map<const Qx::HTTPResponse*, MemoryUse> uses;
    if (!uses.contains(&response))
        uses[&response] = measureMemory([&] { reader(response); });
    // Warms up: a virtual machine returns free memory to its host after a while, and the next use
    // of it is slow.
    timeOf<reader>(response);
    for ([[maybe_unused]] const auto& iteration : state)
        state.SetIterationTime(timeOf<reader>(response));

    const MemoryUse use = uses[&response];
    const auto bytes = static_cast<double>(response.getBody().size());
    state.counters["files"] = static_cast<double>(state.range(0));
    state.counters["bodyBytes"] = bytes;
    state.counters["allocations"] = static_cast<double>(use.allocations);
    // The body itself is also in memory while it is read.
    state.counters["peakOverBody"] = 1 + static_cast<double>(use.peakBytes) / bytes;
}

void withSizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(100)->Arg(1'000)->Arg(10'000)->Arg(100'000)->UseManualTime()->Unit(benchmark::kMicrosecond);
}

BENCHMARK(read<readWithLibrary>)->Name("read/library")->Apply(withSizes);
BENCHMARK(read<readWithLibrary, true>)->Name("read/odd")->Apply(withSizes);
BENCHMARK(read<parseOnly>)->Name("read/parse")->Apply(withSizes);
BENCHMARK(read<readByHand>)->Name("read/hand")->Apply(withSizes);
BENCHMARK(read<readWithNlohmann>)->Name("read/nlohmann")->Apply(withSizes);

} // namespace

} // namespace OrvaneBenchmarks

#include "Benchmarks/BenchmarkServer.h"
#include "HTTPClient/CurlHTTPClient.h"

#include <benchmark/benchmark.h>
#include <boost/assert/source_location.hpp>
#include <chrono>
#include <curl/curl.h>
#include <latch>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace OrvaneBenchmarks {

namespace {

using Qx::HTTPRequest;

const BenchmarkServer& server() {
    static const BenchmarkServer running;
    return running;
}

void require(bool holds) {
    if (!holds)
        throw std::runtime_error("a request has failed");
}

HTTPRequest makeRequest(const std::string& address, HTTPRequest::ExecutionType executionType,
                        HTTPRequest::Callback callback) {
    HTTPRequest request(BOOST_CURRENT_LOCATION);
    request.setURL(address);
    request.setThreadName("benchmark");
    request.setCallback(callback);
    request.executionType = executionType;
    return request;
}

std::size_t append(const char* bytes, std::size_t, std::size_t count, void* body) {
    static_cast<std::string*>(body)->append(bytes, count);
    return count;
}

// The upper bound for the client: libcurl's easy interface with one handle.
void oneAfterAnotherBare(benchmark::State& state) {
    const std::string address = server().smallAddress();
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> easy(curl_easy_init(), &curl_easy_cleanup);
    std::string body;
    curl_easy_setopt(easy.get(), CURLOPT_URL, address.c_str());
    curl_easy_setopt(easy.get(), CURLOPT_WRITEFUNCTION, &append);
    curl_easy_setopt(easy.get(), CURLOPT_WRITEDATA, &body);
    for ([[maybe_unused]] const auto& iteration : state) {
        body.clear();
        require(curl_easy_perform(easy.get()) == CURLE_OK);
    }
    state.SetItemsProcessed(state.iterations());
}

void oneAfterAnother(benchmark::State& state) {
    Qx::CurlHTTPClient client({});
    bool succeeded = false;
    HTTPRequest request = makeRequest(server().smallAddress(), HTTPRequest::ExecutionType::CALLING_THREAD,
                                      [&](const Qx::HTTPResponse& response) { succeeded = response.isSuccessful(); });
    for ([[maybe_unused]] const auto& iteration : state) {
        client.queueRequest(request);
        require(std::exchange(succeeded, false));
    }
    state.SetItemsProcessed(state.iterations());
}

void thousandAtOnce(benchmark::State& state) {
    constexpr std::ptrdiff_t count = 1'000;
    Qx::CurlHTTPClient client({});
    for ([[maybe_unused]] const auto& iteration : state) {
        std::latch unanswered(count);
        HTTPRequest request = makeRequest(server().smallAddress(), HTTPRequest::ExecutionType::CLIENT_THREAD,
                                          [&](const Qx::HTTPResponse& response) {
                                              require(response.isSuccessful());
                                              unanswered.count_down();
                                          });
        for (std::ptrdiff_t sent = 0; sent < count; ++sent)
            client.queueRequest(request);
        unanswered.wait();
    }
    state.SetItemsProcessed(count * state.iterations());
}

// Returns the time from the moment at which the server sends the last bytes to the callback.
std::chrono::duration<double> timeToCallback(Qx::CurlHTTPClient& client) {
    std::chrono::nanoseconds time{};
    HTTPRequest request = makeRequest(
        server().largeAddress(), HTTPRequest::ExecutionType::CALLING_THREAD, [&](const Qx::HTTPResponse& response) {
            const std::chrono::nanoseconds now = std::chrono::steady_clock::now().time_since_epoch();
            require(response.getBody().size() == BenchmarkServer::largeBodyBytes);
            const std::string_view sent =
                response.getBody().substr(response.getBody().size() - BenchmarkServer::timeDigits);
            time = now - std::chrono::nanoseconds(std::stoll(std::string(sent)));
        });
    client.queueRequest(request);
    return time;
}

void lastByteToCallback(benchmark::State& state) {
    Qx::CurlHTTPClient client({});
    for ([[maybe_unused]] const auto& iteration : state)
        state.SetIterationTime(timeToCallback(client).count());
}

BENCHMARK(oneAfterAnotherBare)->Name("client/bare/sequential")->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(oneAfterAnother)->Name("client/sequential")->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(thousandAtOnce)->Name("client/thousandAtOnce")->UseRealTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(lastByteToCallback)
    ->Name("client/lastByteToCallback")
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace OrvaneBenchmarks

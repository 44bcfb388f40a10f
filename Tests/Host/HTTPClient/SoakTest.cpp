// One client meets all circumstances again and again, and good answers between them, for as long as SOAK_SECONDS says.

#include "Tests/Support/Network.h"
#include "Tests/Support/ProcessMemory.h"
#include "Tests/Support/Sending.h"

#include <atomic>
#include <cstdlib>
#include <random>
#include <semaphore>

namespace {

using Type = Qx::HTTPRequest::ExecutionType;
using namespace std::chrono_literals;

TEST(Soak, CompletesEveryRequestAndGrowsInNothing) {
    const char* wanted = std::getenv("SOAK_SECONDS");
    const std::chrono::seconds time(wanted ? std::atoi(wanted) : 2);
    std::atomic<std::uint64_t> requests = 0;
    std::atomic<std::uint64_t> completions = 0;
    std::atomic<std::uint64_t> successes = 0;
    std::counting_semaphore<64> free{64};
    const RawServer server(Network::serveByPath);
    auto hurried = impatient();
    hurried.requestTimeout = 300ms;
    hurried.maxBodyBytes = std::size_t{1} << 20;
    OrvaneHost::CurlHTTPClient client(hurried);

    const auto sendUntil = [&](unsigned seed, std::chrono::steady_clock::time_point end) {
        const auto& circumstances = Network::circumstances();
        std::mt19937 random(seed);
        while (std::chrono::steady_clock::now() < end) {
            free.acquire();
            ++requests;
            const std::size_t index = random() % (4 * circumstances.size());
            const Type type = random() % 2 == 0 ? Type::CALLING_THREAD : Type::CLIENT_THREAD;
            const auto complete = [&](const Qx::HTTPResponse& response) {
                successes += response.isSuccessful() ? 1 : 0;
                ++completions;
                free.release();
            };
            Qx::HTTPRequest request = makeRequest(server.url('/' + std::to_string(index)), type, complete);
            auto unchanged = hurried;
            if (index < circumstances.size())
                circumstances[index].change(request, unchanged);
            client.queueRequest(request);
        }
    };
    const auto sendFor = [&](std::chrono::milliseconds duration) {
        std::vector<std::future<void>> threads;
        for (unsigned seed = 0; seed < 4; ++seed)
            threads.push_back(
                std::async(std::launch::async, sendUntil, seed, std::chrono::steady_clock::now() + duration));
        for (const std::future<void>& thread : threads)
            thread.wait();
        for (int i = 0; i < 5000 && completions != requests; ++i)
            std::this_thread::sleep_for(1ms);
    };

    // Connections, threads and heap grow to what the traffic needs before anything is compared.
    sendFor(time / 2);
    const auto descriptors = countEntries("/proc/self/fd");
    const std::size_t residentFirst = memoryInUse("VmRSS:");
    sendFor(time);
    const std::size_t residentLast = memoryInUse("VmRSS:");
    std::printf("%ju requests, %ju of them successes; resident memory %zu KiB at first, %zu KiB at the end\n",
                std::uintmax_t{requests}, std::uintmax_t{successes}, residentFirst / 1024, residentLast / 1024);
    EXPECT_EQ(completions, requests);
    EXPECT_TRUE(successes > 0 && successes < requests);
    EXPECT_LE(countEntries("/proc/self/fd"), descriptors + 32) << "a connection has two ends here";
    // Without being asked for it runs too short for memory to settle.
    if (wanted) {
        EXPECT_LT(static_cast<double>(residentLast), 1.05 * static_cast<double>(residentFirst));
    }
}

} // namespace

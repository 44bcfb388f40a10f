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

OrvaneHost::CurlHTTPClientSettings hurried() {
    OrvaneHost::CurlHTTPClientSettings made = settings();
    made.connectTimeout = 300ms;
    made.requestTimeout = 300ms;
    made.maxBodyBytes = std::size_t{1} << 20;
    return made;
}

class Traffic {
public:
    // Lets four threads send for a while, and waits for the last answer.
    void sendFor(std::chrono::milliseconds time) {
        const auto end = std::chrono::steady_clock::now() + time;
        std::vector<std::thread> threads;
        for (unsigned seed = 0; seed < 4; ++seed)
            threads.emplace_back([this, seed, end] { send(seed, end); });
        for (std::thread& thread : threads)
            thread.join();
        for (int i = 0; i < 5000 && completions != requests; ++i)
            std::this_thread::sleep_for(1ms);
    }

    std::atomic<std::uint64_t> requests = 0;
    std::atomic<std::uint64_t> completions = 0;
    std::atomic<std::uint64_t> successes = 0;

private:
    void send(unsigned seed, std::chrono::steady_clock::time_point end) {
        const auto& circumstances = Network::circumstances();
        std::mt19937 random(seed);
        while (std::chrono::steady_clock::now() < end) {
            inFlight_.acquire();
            ++requests;
            const std::size_t index = random() % (4 * circumstances.size());
            const Type type = random() % 2 == 0 ? Type::CALLING_THREAD : Type::CLIENT_THREAD;
            const auto complete = [this](const Qx::HTTPResponse& response) {
                successes += response.isSuccessful() ? 1 : 0;
                ++completions;
                inFlight_.release();
            };
            Qx::HTTPRequest request = makeRequest(server_.url('/' + std::to_string(index)), type, complete);
            auto unchanged = hurried();
            if (index < circumstances.size())
                circumstances[index].change(request, unchanged);
            client_.queueRequest(request);
        }
    }

    const RawServer server_{Network::serveByPath};
    std::counting_semaphore<64> inFlight_{64};
    // The last: its end waits for completions, which use the others.
    OrvaneHost::CurlHTTPClient client_{hurried()};
};

TEST(Soak, CompletesEveryRequestAndGrowsInNothing) {
    const char* wanted = std::getenv("SOAK_SECONDS");
    const std::chrono::seconds time(wanted ? std::atoi(wanted) : 2); // Too short for memory to settle.
    Traffic traffic;
    // Connections, threads and heap grow to what the traffic needs before anything is compared.
    traffic.sendFor(std::max<std::chrono::milliseconds>(time / 2, 1s));
    const auto descriptors = countEntries("/proc/self/fd");
    const std::size_t residentFirst = memoryInUse("VmRSS:");
    traffic.sendFor(time);
    const std::size_t residentLast = memoryInUse("VmRSS:");
    std::printf("%ju requests, %ju of them successes; resident memory %zu KiB at first, %zu KiB at the end\n",
                std::uintmax_t{traffic.requests}, std::uintmax_t{traffic.successes}, residentFirst / 1024,
                residentLast / 1024);
    EXPECT_EQ(traffic.completions, traffic.requests);
    EXPECT_GT(traffic.successes, 0U);
    EXPECT_LT(traffic.successes, traffic.requests);
    EXPECT_LE(countEntries("/proc/self/fd"), descriptors + 2 * 16) << "a connection has two ends here";
    if (wanted) {
        EXPECT_LT(static_cast<double>(residentLast), 1.05 * static_cast<double>(residentFirst));
    }
}

} // namespace

// Soak SECONDS: good and faulty traffic of a client for that long. Every request is completed, and neither memory nor
// descriptors grow.

#include "Host/HTTPClient/CurlHTTPClient.h"
#include "Server/Orvane/Orvanedm.h"
#include "Tests/Support/Faults.h"
#include "Tests/Support/ScopedState.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <semaphore>
#include <sys/prctl.h>

namespace {

using OrvaneHost::CurlHTTPClient;
using Qx::HTTPRequest;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int connections = 16;
constexpr int ownDescriptors = 4; // What the client has beside its connections, to be woken by.

// The server is a process of its own, so that what it uses does not count.
class ServerProcess {
public:
    ServerProcess() {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0)
            std::abort();
        process_ = fork();
        if (process_ == 0)
            serve(ends[1]);
        std::array<char, 64> text{};
        if (read(ends[0], text.data(), text.size() - 1) <= 0)
            std::abort();
        url_ = text.data();
        close(ends[0]);
        close(ends[1]);
    }
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;
    ~ServerProcess() { kill(process_, SIGKILL); }

    const std::string& url() const { return url_; }

private:
    [[noreturn]] static void serve(int answerTo) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const RawServer server(Faults::serving(Faults::all()));
        const std::string url = server.url("");
        if (write(answerTo, url.c_str(), url.size() + 1) < 0)
            std::abort();
        while (true)
            pause();
    }

    pid_t process_ = 0;
    std::string url_;
};

std::size_t residentBytes() {
    std::size_t total = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

class Traffic {
public:
    explicit Traffic(const std::string& url) : url_(url) {}

    // Sends what comes to mind until `end`, as one of several threads.
    void run(unsigned seed, Clock::time_point end) {
        std::mt19937 random(seed);
        while (Clock::now() < end) {
            inFlight_.acquire();
            ++requests;
            const bool isAsync = random() % 2 == 0;
            if (random() % 4 != 0)
                askForAssembly(isAsync);
            else
                meetFault(random() % faults_, isAsync);
        }
    }

    void waitForAll() const {
        for (int i = 0; i < 5000 && completions != requests; ++i)
            std::this_thread::sleep_for(1ms);
    }

    std::atomic<std::uint64_t> requests = 0;
    std::atomic<std::uint64_t> completions = 0;
    std::atomic<std::uint64_t> successes = 0;

private:
    void complete(bool success) {
        successes += success ? 1 : 0;
        ++completions;
        inFlight_.release();
    }

    void askForAssembly(bool isAsync) {
        Qx::Orvanedm orvanedm(client_, "soak");
        orvanedm.setAsync(isAsync);
        orvanedm.getFullAssemblyStatus(
            "urn", [this](bool success, const auto&) { complete(success); }, "ACTUAL", L"");
    }

    void meetFault(std::size_t fault, bool isAsync) {
        HTTPRequest request(BOOST_CURRENT_LOCATION);
        request.setURL(url_ + '/' + std::to_string(fault));
        request.executionType =
            isAsync ? HTTPRequest::ExecutionType::CLIENT_THREAD : HTTPRequest::ExecutionType::CALLING_THREAD;
        request.setCallback([this](const Qx::HTTPResponse& response) { complete(response.isSuccessful()); });
        client_->queueRequest(request);
    }

    static std::shared_ptr<CurlHTTPClient> makeClient() {
        OrvaneHost::CurlHTTPClientSettings settings;
        settings.token = "token";
        settings.requestTimeout = 300ms;
        settings.maxConnections = connections;
        return std::make_shared<CurlHTTPClient>(settings);
    }

    const std::string url_;
    const std::size_t faults_ = Faults::all().size();
    std::counting_semaphore<64> inFlight_{64};
    // The last: its end waits for completions, which use the others.
    const std::shared_ptr<CurlHTTPClient> client_ = makeClient();
};

// Lets four threads send for a while, and waits for the last answer.
void sendFor(Traffic& traffic, std::chrono::seconds time) {
    const auto end = Clock::now() + time;
    std::vector<std::thread> threads;
    for (unsigned seed = 0; seed < 4; ++seed)
        threads.emplace_back([&traffic, seed, end] { traffic.run(seed, end); });
    for (std::thread& thread : threads)
        thread.join();
    traffic.waitForAll();
}

// What the process used at the end of each turn.
struct Use {
    std::size_t residentFirst = 0;
    std::size_t residentLast = 0;
    std::ptrdiff_t descriptorsMost = 0;
};

Use sendInTurns(Traffic& traffic, std::chrono::seconds time) {
    // Connections, threads and heap grow to what the traffic needs before anything is compared.
    sendFor(traffic, std::max<std::chrono::seconds>(time / 10, 1s));
    Use use;
    use.residentFirst = residentBytes();
    for (auto left = time; left > 0s; left -= std::min<std::chrono::seconds>(left, 10s)) {
        sendFor(traffic, std::min<std::chrono::seconds>(left, 10s));
        use.residentLast = residentBytes();
        use.descriptorsMost = std::max(use.descriptorsMost, openDescriptors());
    }
    return use;
}

} // namespace

int main(int argc, char** argv) {
    const std::chrono::seconds time(argc > 1 ? std::atoi(argv[1]) : 0);
    const ServerProcess server;
    const ScopedState base =
        scopedOption("soak", L"orvaneV3ServiceUrl", std::wstring(server.url().begin(), server.url().end()));
    const auto descriptorsBefore = openDescriptors();
    auto traffic = std::make_unique<Traffic>(server.url());
    const Use use = sendInTurns(*traffic, time);
    const std::uintmax_t requests = traffic->requests;
    const std::uintmax_t completions = traffic->completions;
    const std::uintmax_t successes = traffic->successes;
    traffic.reset();
    const auto descriptorsAfter = openDescriptors();
    const double growth = 100.0 * (static_cast<double>(use.residentLast) / static_cast<double>(use.residentFirst) - 1);
    std::printf("%ju requests, %ju completions, %ju of them successes\n", requests, completions, successes);
    std::printf("resident memory: %zu KiB at first, %zu KiB at the end, %+.1f %%\n", use.residentFirst / 1024,
                use.residentLast / 1024, growth);
    std::printf("descriptors: %td before, %td at most, %td behind\n", descriptorsBefore, use.descriptorsMost,
                descriptorsAfter);
    const bool areDescriptorsConstant = descriptorsAfter == descriptorsBefore &&
                                        use.descriptorsMost <= descriptorsBefore + connections + ownDescriptors;
    const bool holds =
        successes > 0 && successes < requests && completions == requests && growth < 5 && areDescriptorsConstant;
    std::puts(holds ? "all holds" : "this does not hold");
    return holds ? EXIT_SUCCESS : EXIT_FAILURE;
}

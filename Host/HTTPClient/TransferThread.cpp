#include "Host/HTTPClient/TransferThread.h"

#include "Host/HTTPClient/Connections.h"
#include "Host/HTTPClient/Platform.h"
#include "Host/HTTPClient/Transfer.h"

#include <algorithm>
#include <chrono>
#include <list>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace OrvaneHost {

namespace {

using namespace std::chrono_literals;

// How long requests in flight bear that the system does not let their connections be waited for.
constexpr auto pauseAfterFailure = 10ms;
constexpr int maxFailures = 100;

CurlMulti makeMulti(std::size_t maxConnections) {
    CurlMulti multi(curl_multi_init());
    if (!multi)
        throw std::bad_alloc();
    // Without descriptors for that libcurl makes do, but nobody could wake the thread.
    if (curl_multi_wakeup(multi.get()) != CURLM_OK)
        throw std::system_error(std::make_error_code(std::errc::too_many_files_open));
    curl_multi_setopt(multi.get(), CURLMOPT_MAXCONNECTS, static_cast<long>(maxConnections));
    curl_multi_setopt(multi.get(), CURLMOPT_PIPELINING, static_cast<long>(CURLPIPE_NOTHING));
    return multi;
}

} // namespace

class TransferThread::Loop {
public:
    explicit Loop(CurlHTTPClientSettings settings);
    ~Loop();

    void submit(const std::vector<Qx::HTTPRequest>& requests, std::vector<Answered> answered);
    void close();

private:
    // Transfers go from list to list, which takes no memory: on the thread there would be nobody to tell.
    using Transfers = std::list<Transfer>;

    void run();
    bool isClosing();
    bool performAndWait();
    Transfers takeWaiting();
    void startWaiting();
    bool begin(Transfer& transfer);
    bool finishDone();
    void finish(CURL* handle, CURLcode result);
    void fail(Transfers& transfers, FailureKind kind, const char* reason);

    Connections connections_; // The first, since it initialises libcurl.
    const TransferRules rules_;
    const std::size_t maxConnections_;
    CurlMulti multi_; // Ends with the thread.

    // Only these two are touched by other threads.
    std::mutex mutex_;
    Transfers waiting_;
    bool closing_ = false;

    Transfers active_;
    std::thread thread_;
};

TransferThread::Loop::Loop(CurlHTTPClientSettings settings)
    : rules_(std::move(settings)),
      maxConnections_(std::max<std::size_t>(rules_.settings().maxConnections, 1)),
      multi_(makeMulti(maxConnections_)),
      thread_(startThread([this] { run(); })) {}

TransferThread::Loop::~Loop() {
    close();
}

void TransferThread::Loop::close() {
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard lock(mutex_);
        closing_ = true;
        connections_.end();
        curl_multi_wakeup(multi_.get());
    }
    thread_.join();
}

// All happens under the lock, and nothing is touched behind it: a completion may have destroyed the client, which takes
// the lock first.
void TransferThread::Loop::submit(const std::vector<Qx::HTTPRequest>& requests, std::vector<Answered> answered) {
    Transfers accepted;
    Transfers refused;
    for (std::size_t index = 0; index < requests.size(); ++index) {
        accepted.emplace_back(requests[index], rules_, std::move(answered[index]));
        if (accepted.back().isRefused())
            refused.splice(refused.end(), accepted, std::prev(accepted.end()));
    }
    const std::lock_guard lock(mutex_);
    for (Transfer& transfer : refused)
        transfer.answerRefusal();
    if (closing_) {
        fail(accepted, FailureKind::CLOSED, closedFirst);
        return;
    }
    waiting_.splice(waiting_.end(), accepted);
    curl_multi_wakeup(multi_.get());
}

// To the end on this thread, also closing TLS connections: that may write to broken ones, and raise a signal for it
// that this thread does not take.
void TransferThread::Loop::run() {
    nameThisThread("orvane-transfer");
    for (int failures = 0; !isClosing();) {
        startWaiting();
        failures = performAndWait() ? 0 : failures + 1;
        if (failures > 0)
            std::this_thread::sleep_for(pauseAfterFailure);
        if (failures == maxFailures) {
            failures = 0;
            fail(active_, FailureKind::NETWORK, "the system does not let the client wait for its connections");
        }
    }
    fail(active_, FailureKind::CLOSED, closedFirst);
    fail(waiting_, FailureKind::CLOSED, closedFirst);
    multi_.reset();
}

bool TransferThread::Loop::isClosing() {
    const std::lock_guard lock(mutex_);
    return closing_;
}

// False if the system does not let it wait.
bool TransferThread::Loop::performAndWait() {
    int running = 0;
    connections_.beginRound(std::max<std::chrono::milliseconds>(rules_.settings().connectTimeout, 1s));
    const CURLMcode performed = curl_multi_perform(multi_.get(), &running);
    // What has finished makes room for what waits.
    if (finishDone())
        return true;
    return performed == CURLM_OK && curl_multi_poll(multi_.get(), nullptr, 0, 1000, nullptr) == CURLM_OK;
}

// The next one, or none.
TransferThread::Loop::Transfers TransferThread::Loop::takeWaiting() {
    const std::lock_guard lock(mutex_);
    Transfers one;
    if (!waiting_.empty())
        one.splice(one.end(), waiting_, waiting_.begin());
    return one;
}

// libcurl could hold back transfers itself, but their time limits would run while they wait.
void TransferThread::Loop::startWaiting() {
    while (active_.size() < maxConnections_) {
        Transfers one = takeWaiting();
        if (one.empty())
            return;
        if (begin(one.front()))
            active_.splice(active_.end(), one);
        else
            one.front().answerOutOfMemory();
    }
}

bool TransferThread::Loop::begin(Transfer& transfer) {
    return transfer.start(connections_) && curl_multi_add_handle(multi_.get(), transfer.handle()) == CURLM_OK;
}

bool TransferThread::Loop::finishDone() {
    bool any = false;
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &left)) {
        if (message->msg != CURLMSG_DONE)
            continue;
        finish(message->easy_handle, message->data.result);
        any = true;
    }
    return any;
}

void TransferThread::Loop::finish(CURL* handle, CURLcode result) {
    curl_multi_remove_handle(multi_.get(), handle);
    const auto transfer = std::find_if(active_.begin(), active_.end(),
                                       [handle](const Transfer& candidate) { return candidate.handle() == handle; });
    if (transfer->goesOn(result)) {
        if (begin(*transfer))
            return;
        transfer->answerOutOfMemory();
    } else {
        transfer->answer(result);
    }
    active_.erase(transfer);
}

void TransferThread::Loop::fail(Transfers& transfers, FailureKind kind, const char* reason) {
    for (Transfer& transfer : transfers) {
        if (transfer.handle())
            curl_multi_remove_handle(multi_.get(), transfer.handle());
        transfer.answerFailure(kind, reason);
    }
    transfers.clear();
}

TransferThread::TransferThread(CurlHTTPClientSettings settings) : loop_(std::make_unique<Loop>(std::move(settings))) {}

TransferThread::~TransferThread() = default;

void TransferThread::close() {
    loop_->close();
}

void TransferThread::submit(const std::vector<Qx::HTTPRequest>& requests, std::vector<Answered> answered) {
    loop_->submit(requests, std::move(answered));
}

} // namespace OrvaneHost

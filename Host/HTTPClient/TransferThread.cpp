#include "Host/HTTPClient/TransferThread.h"

#include "Host/HTTPClient/Transfer.h"

#include <algorithm>
#include <curl/curl.h>
#include <list>
#include <mutex>
#include <new>
#include <pthread.h>
#include <thread>
#include <utility>
#include <vector>

namespace OrvaneHost {

namespace {

constexpr const char* closed = "the HTTP client was closed before the answer came";

CurlMulti makeMulti(std::size_t maxConnections) {
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    CurlMulti multi(initialised == CURLE_OK ? curl_multi_init() : nullptr);
    if (!multi)
        throw std::bad_alloc();
    curl_multi_setopt(multi.get(), CURLMOPT_MAXCONNECTS, static_cast<long>(maxConnections));
    return multi;
}

void answerAll(std::list<Transfer>& transfers, std::string_view failure) {
    for (Transfer& transfer : transfers)
        transfer.answerFailure(failure);
    transfers.clear();
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
    bool enqueue(Transfers& transfers);
    Transfers takeWaiting();
    void startWaiting();
    void start(Transfers one);
    bool finishDone();
    void finish(CURL* handle, CURLcode result);
    void keep(CurlEasy easy);

    const CurlHTTPClientSettings settings_;
    const std::size_t maxConnections_;
    const CurlMulti multi_;

    // Only these two are touched by other threads.
    std::mutex mutex_;
    Transfers waiting_;
    bool closing_ = false;

    Transfers active_;
    std::vector<CurlEasy> idle_;
    std::thread thread_;
};

TransferThread::Loop::Loop(CurlHTTPClientSettings settings)
    : settings_(std::move(settings)),
      maxConnections_(std::max<std::size_t>(settings_.maxConnections, 1)),
      multi_(makeMulti(maxConnections_)),
      thread_([this] { run(); }) {}

TransferThread::Loop::~Loop() {
    close();
}

void TransferThread::Loop::close() {
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard lock(mutex_);
        closing_ = true;
    }
    curl_multi_wakeup(multi_.get());
    thread_.join();
    for (const Transfer& transfer : active_)
        curl_multi_remove_handle(multi_.get(), transfer.handle());
    answerAll(active_, closed);
    answerAll(waiting_, closed);
}

void TransferThread::Loop::submit(const std::vector<Qx::HTTPRequest>& requests, std::vector<Answered> answered) {
    Transfers transfers;
    for (std::size_t index = 0; index < requests.size(); ++index)
        transfers.emplace_back(requests[index], settings_, std::move(answered[index]));
    if (!enqueue(transfers))
        answerAll(transfers, closed);
}

// False if it is too late for them, which then stay where they are. Behind the lock nothing is touched: a completion
// may have destroyed the client, which takes the lock first.
bool TransferThread::Loop::enqueue(Transfers& transfers) {
    const std::lock_guard lock(mutex_);
    if (closing_)
        return false;
    waiting_.splice(waiting_.end(), transfers);
    curl_multi_wakeup(multi_.get());
    return true;
}

void TransferThread::Loop::run() {
    pthread_setname_np(pthread_self(), "orvane-transfer");
    while (!isClosing()) {
        startWaiting();
        int running = 0;
        curl_multi_perform(multi_.get(), &running);
        // What has finished makes room for what waits.
        if (!finishDone())
            curl_multi_poll(multi_.get(), nullptr, 0, 1000, nullptr);
    }
}

bool TransferThread::Loop::isClosing() {
    const std::lock_guard lock(mutex_);
    return closing_;
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
        start(std::move(one));
    }
}

void TransferThread::Loop::start(Transfers one) {
    Transfer& transfer = one.front();
    if (!transfer.refusal().empty()) {
        transfer.answerFailure(transfer.refusal());
        return;
    }
    CurlEasy easy(idle_.empty() ? curl_easy_init() : idle_.back().release());
    if (!idle_.empty())
        idle_.pop_back();
    const bool isPrepared = easy && transfer.prepare(std::move(easy));
    if (isPrepared && curl_multi_add_handle(multi_.get(), transfer.handle()) == CURLM_OK)
        active_.splice(active_.end(), one);
    else
        transfer.answerFailure(outOfMemory);
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
    transfer->answer(result);
    keep(transfer->releaseHandle());
    active_.erase(transfer);
}

// For the next transfer, which otherwise gets a new one.
void TransferThread::Loop::keep(CurlEasy easy) {
    try {
        idle_.push_back(std::move(easy));
    } catch (const std::bad_alloc&) {
        return;
    }
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

#include "Host/HTTPClient/TransferThread.h"

#include "Host/HTTPClient/Transfer.h"

#include <algorithm>
#include <curl/curl.h>
#include <deque>
#include <mutex>
#include <new>
#include <thread>
#include <unordered_map>
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

} // namespace

class TransferThread::Loop {
public:
    explicit Loop(CurlHTTPClientSettings settings);
    ~Loop();

    void submit(const Qx::HTTPRequest& request, Answered answered);
    void close();

private:
    using TransferPointer = std::unique_ptr<Transfer>;

    void run();
    bool isClosing();
    TransferPointer enqueue(TransferPointer transfer);
    TransferPointer takeWaiting();
    void startWaiting();
    void start(TransferPointer transfer);
    bool finishDone();
    void finish(CURL* handle, CURLcode result);

    const CurlHTTPClientSettings settings_;
    const std::size_t maxConnections_;
    const CurlMulti multi_;

    // Only these two are touched by other threads.
    std::mutex mutex_;
    std::deque<TransferPointer> waiting_;
    bool closing_ = false;

    std::unordered_map<CURL*, TransferPointer> active_;
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
    for (const auto& [handle, transfer] : active_) {
        curl_multi_remove_handle(multi_.get(), handle);
        transfer->answerFailure(closed);
    }
    active_.clear();
    while (const TransferPointer transfer = takeWaiting())
        transfer->answerFailure(closed);
}

void TransferThread::Loop::submit(const Qx::HTTPRequest& request, Answered answered) {
    auto transfer = std::make_unique<Transfer>(request, settings_, std::move(answered));
    if (!transfer->refusal().empty()) {
        transfer->answerFailure(transfer->refusal());
        return;
    }
    if (const TransferPointer late = enqueue(std::move(transfer)))
        late->answerFailure(closed);
    else
        curl_multi_wakeup(multi_.get());
}

// Gives the transfer back if it is too late for it.
TransferThread::Loop::TransferPointer TransferThread::Loop::enqueue(TransferPointer transfer) {
    const std::lock_guard lock(mutex_);
    if (closing_)
        return transfer;
    waiting_.push_back(std::move(transfer));
    return nullptr;
}

void TransferThread::Loop::run() {
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

TransferThread::Loop::TransferPointer TransferThread::Loop::takeWaiting() {
    const std::lock_guard lock(mutex_);
    if (waiting_.empty())
        return nullptr;
    TransferPointer transfer = std::move(waiting_.front());
    waiting_.pop_front();
    return transfer;
}

// libcurl could hold back transfers itself, but their time limits would run while they wait.
void TransferThread::Loop::startWaiting() {
    while (active_.size() < maxConnections_) {
        TransferPointer transfer = takeWaiting();
        if (!transfer)
            return;
        start(std::move(transfer));
    }
}

void TransferThread::Loop::start(TransferPointer transfer) {
    CurlEasy easy(idle_.empty() ? curl_easy_init() : idle_.back().release());
    if (!idle_.empty())
        idle_.pop_back();
    const bool isPrepared = easy && transfer->prepare(std::move(easy));
    if (!isPrepared || curl_multi_add_handle(multi_.get(), transfer->handle()) != CURLM_OK) {
        transfer->answerFailure("out of memory");
        return;
    }
    CURL* handle = transfer->handle();
    active_.emplace(handle, std::move(transfer));
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
    const auto node = active_.extract(handle);
    curl_multi_remove_handle(multi_.get(), handle);
    node.mapped()->answer(result);
    idle_.push_back(node.mapped()->releaseHandle());
}

TransferThread::TransferThread(CurlHTTPClientSettings settings) : loop_(std::make_unique<Loop>(std::move(settings))) {}

TransferThread::~TransferThread() = default;

void TransferThread::close() {
    loop_->close();
}

void TransferThread::submit(const Qx::HTTPRequest& request, Answered answered) {
    loop_->submit(request, std::move(answered));
}

} // namespace OrvaneHost

#include "HTTPClient/Detail/TransferThread.h"

#include "HTTPClient/Detail/Connections.h"
#include "HTTPClient/Detail/Process.h"
#include "HTTPClient/Detail/Session.h"
#include "HTTPClient/Detail/Transfer.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <list>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace Qx::Detail {

namespace {

using namespace std::chrono_literals;

// Requests in flight fail once waiting for their connections has failed `maxFailures` times in a
// row, with a pause after each failure.
constexpr auto pauseAfterFailure = 10ms;
constexpr int maxFailures = 100;

CurlMulti makeMulti(std::size_t maxConnections) {
    CurlMulti multi(curl_multi_init());
    if (!multi)
        throw std::bad_alloc();
    // Without descriptors for the wakeup, libcurl would carry on, but nothing could wake the
    // thread.
    if (curl_multi_wakeup(multi.get()) != CURLM_OK)
        throw std::system_error(std::make_error_code(std::errc::too_many_files_open));
    curl_multi_setopt(multi.get(), CURLMOPT_MAXCONNECTS, static_cast<long>(maxConnections));
    curl_multi_setopt(multi.get(), CURLMOPT_PIPELINING, static_cast<long>(CURLPIPE_NOTHING));
    return multi;
}

} // namespace

class TransferThread::Loop {
public:
    explicit Loop(std::size_t maxConnections);
    ~Loop();

    void submit(Session& session, const std::vector<HTTPRequest>& requests, std::vector<ResponseHandler> handlers);
    void cancel(Session& session, bool isClosing);
    std::optional<TokenQuestion> nextTokenQuestion(Session& session);
    void answer(Session& session, const TokenQuestion& question, const std::string& token,
                const std::function<void(Transfer&)>& fail) noexcept;

private:
    // Transfers are spliced from list to list, which allocates nothing: on the transfer thread,
    // std::bad_alloc could not reach a caller.
    using Transfers = std::list<Transfer>;

    void run();
    bool isEnding();
    void completeCancelled();
    void beginRound();
    bool performAndWait();
    int waitTime() const;
    void restartDue();
    void startWaiting();
    void begin(Transfers& one);
    bool finishDone();
    void finish(CURL* handle, CURLcode result);
    void wait(Transfers& transfers);
    template <class Respond>
    void end(Transfers& transfers, Respond respond);
    void renewToken(Transfers& one);

    Connections connections_; // First, since it initialises libcurl.
    const std::size_t maxConnections_;
    CurlMulti multi_; // The thread destroys it.

    // Other threads access these too.
    std::mutex mutex_;
    std::condition_variable changed_;
    Transfers waiting_;
    Transfers awaitingToken_;
    bool hasCancelled_ = false;
    bool isEnding_ = false;

    Transfers active_;
    Transfers delayed_;
    std::thread thread_;
};

TransferThread::Loop::Loop(std::size_t maxConnections)
    : maxConnections_(std::max<std::size_t>(maxConnections, 1)),
      multi_(makeMulti(maxConnections_)),
      thread_(startThread([this] { run(); })) {}

TransferThread::Loop::~Loop() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        curl_multi_wakeup(multi_.get());
    }
    thread_.join();
}

// Responds and queues under the lock, and touches nothing after releasing it: from then on, a
// completion may destroy the client, whose destructor has to take the lock first.
void TransferThread::Loop::submit(Session& session, const std::vector<HTTPRequest>& requests,
                                  std::vector<ResponseHandler> handlers) {
    Transfers accepted;
    Transfers refused;
    for (std::size_t index = 0; index < requests.size(); ++index) {
        accepted.emplace_back(requests[index], session, std::move(handlers[index]));
        if (accepted.back().hasFailed())
            refused.splice(refused.end(), accepted, std::prev(accepted.end()));
    }
    const std::lock_guard lock(mutex_);
    for (Transfer& transfer : refused)
        transfer.respond();
    for (Transfer& transfer : accepted) {
        if (session.isClosed)
            transfer.respondCancelled();
        else if (transfer.needsToken() && std::this_thread::get_id() == session.tokenThread)
            transfer.respondFailure(FailureKind::REFUSED, "the token source must not send requests that need a token");
        else
            transfer.setNumber(++session.submitted);
    }
    accepted.remove_if([](const Transfer& transfer) { return transfer.number() == 0; });
    session.unfinished += accepted.size();
    wait(accepted);
}

// Call with the lock held.
void TransferThread::Loop::wait(Transfers& transfers) {
    while (!transfers.empty()) {
        Transfers& list = transfers.front().needsToken() ? awaitingToken_ : waiting_;
        list.splice(list.end(), transfers, transfers.begin());
    }
    if (!awaitingToken_.empty())
        changed_.notify_all();
    curl_multi_wakeup(multi_.get());
}

void TransferThread::Loop::cancel(Session& session, bool isClosing) {
    std::unique_lock lock(mutex_);
    session.isClosed = session.isClosed || isClosing;
    session.cancelled = session.submitted;
    changed_.notify_all();
    if (session.unfinished == 0)
        return;
    hasCancelled_ = true;
    connections_.shortenLimit();
    curl_multi_wakeup(multi_.get());
    if (isClosing)
        changed_.wait(lock, [&] { return session.unfinished == 0; });
}

std::optional<TransferThread::TokenQuestion> TransferThread::Loop::nextTokenQuestion(Session& session) {
    std::unique_lock lock(mutex_);
    session.tokenThread = std::this_thread::get_id();
    const auto isOfSession = [&](const Transfer& transfer) { return &transfer.session() == &session; };
    auto asking = awaitingToken_.end();
    changed_.wait(lock, [&] {
        asking = std::find_if(awaitingToken_.begin(), awaitingToken_.end(), isOfSession);
        return asking != awaitingToken_.end() || session.isClosed;
    });
    if (session.isClosed)
        return std::nullopt;
    return TokenQuestion{asking->refusedToken(), session.submitted};
}

void TransferThread::Loop::answer(Session& session, const TokenQuestion& question, const std::string& token,
                                  const std::function<void(Transfer&)>& fail) noexcept {
    Transfers answered;
    Transfers ended;
    {
        const std::lock_guard lock(mutex_);
        for (auto next = awaitingToken_.begin(); next != awaitingToken_.end();) {
            const auto transfer = next++;
            const bool isAsked = &transfer->session() == &session && transfer->number() <= question.askedFor;
            // This token has been refused too, but the source has not been told yet.
            const bool asksAgain =
                transfer->refusedToken() == token && token != question.refusedToken && !token.empty();
            if (!isAsked || (asksAgain && !fail))
                continue;
            if (fail)
                fail(*transfer);
            Transfers& list = !fail && transfer->setToken(token) ? answered : ended;
            list.splice(list.end(), awaitingToken_, transfer);
        }
        if (!fail)
            session.setLastToken(token);
        wait(answered);
    }
    end(ended, [](Transfer& transfer) { transfer.respond(); });
}

void TransferThread::Loop::run() {
    nameThisThread("orvane-transfer");
    for (int failures = 0; !isEnding();) {
        beginRound();
        completeCancelled();
        restartDue();
        startWaiting();
        failures = performAndWait() ? 0 : failures + 1;
        if (failures > 0)
            std::this_thread::sleep_for(pauseAfterFailure);
        if (failures == maxFailures) {
            failures = 0;
            for (Transfer& transfer : active_)
                curl_multi_remove_handle(multi_.get(), transfer.handle());
            end(active_, [](Transfer& transfer) {
                transfer.respondFailure(FailureKind::NETWORK,
                                        "the system does not let the client wait for connections");
            });
        }
    }
    // On this thread, since closing TLS connections may write to broken ones and raise SIGPIPE,
    // which this thread blocks.
    beginRound();
    connections_.shortenLimit();
    multi_.reset();
}

bool TransferThread::Loop::isEnding() {
    const std::lock_guard lock(mutex_);
    return isEnding_;
}

void TransferThread::Loop::completeCancelled() {
    Transfers cancelled;
    const auto takeFrom = [&](Transfers& transfers) {
        for (auto next = transfers.begin(); next != transfers.end();) {
            const auto transfer = next++;
            if (transfer->isCancelled())
                cancelled.splice(cancelled.end(), transfers, transfer);
        }
    };
    {
        const std::lock_guard lock(mutex_);
        if (!std::exchange(hasCancelled_, false))
            return;
        takeFrom(waiting_);
        takeFrom(awaitingToken_);
    }
    takeFrom(delayed_);
    takeFrom(active_);
    for (Transfer& transfer : cancelled)
        if (transfer.handle()) {
            transfer.abandonConnection();
            curl_multi_remove_handle(multi_.get(), transfer.handle());
        }
    end(cancelled, [](Transfer& transfer) { transfer.respondCancelled(); });
}

void TransferThread::Loop::beginRound() {
    const std::lock_guard lock(mutex_);
    connections_.beginRound(1s);
    if (hasCancelled_)
        connections_.shortenLimit();
}

// Returns false if the system can't wait for connections.
bool TransferThread::Loop::performAndWait() {
    int running = 0;
    const CURLMcode performed = curl_multi_perform(multi_.get(), &running);
    // Transfers that have finished make room for waiting ones.
    if (finishDone())
        return true;
    return performed == CURLM_OK && curl_multi_poll(multi_.get(), nullptr, 0, waitTime(), nullptr) == CURLM_OK;
}

// Returns how long to wait, in milliseconds: at most a second, and no longer than until the next
// retry is due.
int TransferThread::Loop::waitTime() const {
    Transfer::Clock::duration time = 1s;
    for (const Transfer& transfer : delayed_)
        time = std::min(time, transfer.due() - Transfer::Clock::now());
    return static_cast<int>(
        std::max<std::chrono::milliseconds>(std::chrono::ceil<std::chrono::milliseconds>(time), 0ms).count());
}

void TransferThread::Loop::restartDue() {
    Transfers due;
    for (auto next = delayed_.begin(); next != delayed_.end();) {
        const auto transfer = next++;
        if (transfer->due() <= Transfer::Clock::now())
            due.splice(due.end(), delayed_, transfer);
    }
    const std::lock_guard lock(mutex_);
    waiting_.splice(waiting_.begin(), due);
}

// libcurl could hold back transfers itself, but their time limits would run while they wait.
void TransferThread::Loop::startWaiting() {
    while (active_.size() < maxConnections_) {
        Transfers one;
        {
            const std::lock_guard lock(mutex_);
            if (waiting_.empty())
                return;
            one.splice(one.end(), waiting_, waiting_.begin());
        }
        begin(one);
    }
}

void TransferThread::Loop::begin(Transfers& one) {
    Transfer& transfer = one.front();
    if (transfer.start(connections_) && curl_multi_add_handle(multi_.get(), transfer.handle()) == CURLM_OK)
        active_.splice(active_.end(), one);
    else
        end(one, [](Transfer& failed) { failed.respondOutOfMemory(); });
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
    Transfers one;
    one.splice(one.end(), active_, std::find_if(active_.begin(), active_.end(), [handle](const Transfer& candidate) {
                   return candidate.handle() == handle;
               }));
    switch (one.front().next(result)) {
    case Transfer::Next::FOLLOW:
        begin(one);
        return;
    case Transfer::Next::RETRY:
        delayed_.splice(delayed_.end(), one);
        return;
    case Transfer::Next::RENEW_TOKEN:
        renewToken(one);
        return;
    case Transfer::Next::RESPOND:
        end(one, [](Transfer& transfer) { transfer.respond(); });
    }
}

// Another request may have led to a new token in the meantime.
void TransferThread::Loop::renewToken(Transfers& one) {
    {
        const std::lock_guard lock(mutex_);
        Transfer& transfer = one.front();
        const std::string& token = transfer.session().lastToken;
        if (token.empty() || token == transfer.refusedToken() || transfer.setToken(token))
            wait(one);
    }
    end(one, [](Transfer& transfer) { transfer.respond(); });
}

template <class Respond>
void TransferThread::Loop::end(Transfers& transfers, Respond respond) {
    while (!transfers.empty()) {
        Session& session = transfers.front().session();
        respond(transfers.front());
        transfers.pop_front();
        const std::lock_guard lock(mutex_);
        if (--session.unfinished == 0)
            changed_.notify_all();
    }
}

TransferThread::TransferThread(std::size_t maxConnections) : loop_(std::make_unique<Loop>(maxConnections)) {}

TransferThread::~TransferThread() = default;

void TransferThread::submit(Session& session, const std::vector<HTTPRequest>& requests,
                            std::vector<ResponseHandler> handlers) {
    loop_->submit(session, requests, std::move(handlers));
}

void TransferThread::cancel(Session& session) {
    loop_->cancel(session, false);
}

void TransferThread::close(Session& session) {
    loop_->cancel(session, true);
}

std::optional<TransferThread::TokenQuestion> TransferThread::nextTokenQuestion(Session& session) {
    return loop_->nextTokenQuestion(session);
}

void TransferThread::answerTokenQuestion(Session& session, const TokenQuestion& question,
                                         const std::string& token) noexcept {
    loop_->answer(session, question, token, nullptr);
}

void TransferThread::answerTokenQuestion(Session& session, const TokenQuestion& question,
                                         const TransferError& error) noexcept {
    loop_->answer(session, question, {}, [&](Transfer& transfer) { transfer.setFailure(error); });
}

void TransferThread::failTokenQuestion(Session& session) noexcept {
    const TokenQuestion any{{}, std::numeric_limits<std::uint64_t>::max()};
    loop_->answer(session, any, {}, [](Transfer& transfer) { transfer.setOutOfMemory(); });
}

} // namespace Qx::Detail

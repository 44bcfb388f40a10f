#include "Testing/RecordingHTTPClient.h"

#include "Testing/Detail/Anonymizer.h"
#include "Testing/Detail/Exchange.h"
#include "Testing/Detail/Secrets.h"

#include <chrono>
#include <exception>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

namespace Orvane::Testing {

namespace {

using Qx::HTTPRequest;
using Qx::HTTPResponse;
using Clock = std::chrono::steady_clock;

} // namespace

class RecordingHTTPClient::Recorder {
public:
    Recorder(std::filesystem::path folder, RecordingOptions options)
        : folder_(std::move(folder)), options_(std::move(options)) {
        attempt([&] {
            std::filesystem::create_directories(folder_);
            number_ = Detail::lastExchangeIn(folder_);
        });
        // Starts above all names that an earlier recorder made up; no body contains this many.
        constexpr std::size_t namesOfABody = 10'000'000;
        names_ = Detail::Anonymizer(number_ * namesOfABody + 1);
    }

    void record(HTTPRequest::Method method, const std::string& url, const HTTPResponse& response,
                Clock::duration time) {
        const std::lock_guard lock(mutex_);
        attempt([&] {
            if (response.getStatus() != 0 && !Detail::isFinalStatus(response.getStatus()))
                throw std::runtime_error("a response with status " + std::to_string(response.getStatus()) +
                                         " can't be replayed");
            Detail::Exchange exchange{method, Detail::withoutSecrets(url), Detail::withoutSecrets(response),
                                      std::chrono::duration_cast<std::chrono::microseconds>(time)};
            constexpr std::size_t minSecretLength = 8; // Ordinary words could contain a shorter one.
            if (options_.secret.size() >= minSecretLength)
                exchange.response = Detail::without(options_.secret, exchange.response);
            if (options_.anonymize)
                exchange = names_.replaceIn(exchange);
            number_ = Detail::writeExchange(exchange, folder_, number_ + 1);
        });
    }

    std::string problem() const {
        const std::lock_guard lock(mutex_);
        return problem_;
    }

private:
    template <class Action>
    void attempt(Action action) noexcept {
        try {
            action();
        } catch (const std::bad_alloc&) {
            setProblem("out of memory");
        } catch (const std::exception& error) {
            setProblem(error.what());
        }
    }

    void setProblem(const char* problem) noexcept {
        try {
            problem_ = problem;
        } catch (const std::exception&) {
            problem_ = "out of memory"; // Short enough to need no allocation.
        }
    }

    mutable std::mutex mutex_;
    const std::filesystem::path folder_;
    const RecordingOptions options_;
    std::size_t number_ = 0;
    Detail::Anonymizer names_;
    std::string problem_;
};

RecordingHTTPClient::RecordingHTTPClient(std::shared_ptr<Qx::IHTTPClient> client, const std::filesystem::path& folder,
                                         RecordingOptions options)
    : client_(std::move(client)), recorder_(std::make_shared<Recorder>(folder, std::move(options))) {}

RecordingHTTPClient::~RecordingHTTPClient() = default;

HTTPRequest RecordingHTTPClient::recorded(const HTTPRequest& request) const {
    HTTPRequest recorded = request;
    recorded.setCallback([recorder = recorder_, method = request.getMethod(), url = request.getURL(),
                          callback = request.getCallback(), start = Clock::now()](const HTTPResponse& response) {
        recorder->record(method, url, response, Clock::now() - start);
        if (callback)
            callback(response);
    });
    return recorded;
}

void RecordingHTTPClient::queueRequest(HTTPRequest& request) {
    HTTPRequest sent = recorded(request);
    client_->queueRequest(sent);
}

void RecordingHTTPClient::whenAllRequests(std::vector<HTTPRequest>& requests, BatchCallback callback,
                                          HTTPRequest::ExecutionType executionType) {
    std::vector<HTTPRequest> sent;
    sent.reserve(requests.size());
    for (const HTTPRequest& request : requests)
        sent.push_back(recorded(request));
    client_->whenAllRequests(sent, std::move(callback), executionType);
}

std::string RecordingHTTPClient::problem() const {
    return recorder_->problem();
}

} // namespace Orvane::Testing

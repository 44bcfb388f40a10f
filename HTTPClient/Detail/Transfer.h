#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"
#include "HTTPClient/Detail/Connections.h"
#include "HTTPClient/Detail/Curl.h"
#include "HTTPClient/Detail/Destination.h"
#include "HTTPClient/Detail/ResponseBody.h"
#include "HTTPClient/Detail/ResponseHeader.h"
#include "HTTPClient/Detail/Session.h"
#include "HTTPClient/Detail/TransferError.h"
#include "HTTPClient/Detail/TransferThread.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Qx::Detail {

/// One request in progress, including redirects and further attempts: what is sent, under which
/// limits, and what has come back so far. May be created on any thread; used by one thread at a
/// time, and while it has a handle, only by the transfer thread.
class Transfer {
public:
    using Clock = std::chrono::steady_clock;

    /// What to do after an exchange with the server.
    enum class Next {
        RESPOND,
        FOLLOW,      ///< Start again at once, after a redirect or on a new connection.
        RETRY,       ///< Start again at the time that `due` returns.
        RENEW_TOKEN, ///< Start again with another token, if there is one.
    };

    /// Throws `std::bad_alloc` when memory runs out. `session` must outlive this object.
    Transfer(const HTTPRequest& request, Session& session, TransferThread::ResponseHandler handler);
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    Session& session() const;

    /// The number that the session has assigned to it.
    void setNumber(std::uint64_t number);
    std::uint64_t number() const;

    /// Returns whether its client has cancelled it or is closing.
    bool isCancelled() const;

    /// Returns whether it can't start before `setToken` is called.
    bool needsToken() const;

    /// The token that the service has refused; empty if none was refused.
    const std::string& refusedToken() const;

    /// Returns false if the request can't continue with this token: it may not be sent or, after a
    /// refusal, is empty or the one that was refused.
    bool setToken(const std::string& token) noexcept;

    /// `hasFailed` returns whether something is wrong with the request or the response; the setters
    /// record it.
    bool hasFailed() const;
    void setFailure(const TransferError& error) noexcept;
    void setFailure(FailureKind kind, const char* reason) noexcept;
    void setOutOfMemory() noexcept;

    /// Creates and prepares a handle for the next exchange. Returns false when memory runs out.
    /// Each exchange has its own handle, since libcurl keeps the credentials of the previous
    /// exchange in its handle and might send them again. `connections` must outlive this object.
    bool start(Connections& connections);

    /// The handle that `start` made.
    CURL* handle() const;

    /// Keeps other requests off the connection, on which the rest of the response may still arrive.
    void abandonConnection();

    /// Decides what to do after the exchange, which libcurl has ended with `result`.
    Next next(CURLcode result) noexcept;

    Clock::time_point due() const;

    /// Calls the handler with what came back, or with the reason why nothing did. Call only once.
    void respond() noexcept;
    void respondFailure(FailureKind kind, const char* reason) noexcept;
    void respondCancelled() noexcept;
    void respondOutOfMemory() noexcept;

private:
    template <class Value>
    void set(CURLoption option, Value value);
    void setRequest();
    void setConnection();
    void setProxy();
    void setLimits();
    void setCallbacks();

    template <auto read>
    static std::size_t receive(char* bytes, std::size_t, std::size_t count, void* transfer) noexcept;
    static int checkConnection(void* transfer, char* peer, char*, int peerPort, int localPort) noexcept;
    static int watch(void* transfer, curl_off_t total, curl_off_t received, curl_off_t, curl_off_t) noexcept;
    void checkPeer(const std::string& peer, int peerPort, int localPort);
    template <class Action>
    bool attempt(Action action) noexcept;
    void readHeaderLine(std::string_view line);
    void readBody(std::string_view bytes);
    void checkCancelled() const;
    void checkProgress();
    void checkPace();
    void checkReceived();

    Next decide(CURLcode result);
    void redirect();
    bool isWorthARetry() const;
    bool setDue();
    void reportProgress(curl_off_t total, curl_off_t received) noexcept;
    void reportAttempt() noexcept;
    template <class MakeError>
    void fail(MakeError makeError) noexcept;
    TransferError cancellation() const;
    HTTPResponse makeResponse();
    std::string place() const;
    std::string shownURL() const;

    Session& session_;
    const CurlHTTPClientOptions& options_;
    TransferThread::ResponseHandler handler_;
    std::uint64_t number_ = 0;
    const HTTPRequest::Method requestedMethod_;
    HTTPRequest::Method method_;
    Destination destination_;
    bool sendsToken_ = false;
    bool hasToken_ = false;
    std::string token_;
    std::string refusedToken_;
    CurlHeaders headers_;
    std::optional<TransferError> error_; ///< What is wrong, if anything.
    bool isOutOfMemory_ = false;

    int attempts_ = 0;
    std::optional<Clock::time_point> attemptStart_; ///< Set while an attempt is in progress.
    Clock::time_point due_;
    Clock::time_point lastProgress_;
    Connections* connections_ = nullptr;
    bool isAllSet_ = true;
    bool isStale_ = false; ///< Whether the connection has received unsolicited data.
    bool takesNewConnection_ = false;
    int redirects_ = 0;
    std::size_t headerBytes_ = 0;  ///< Of all responses in this attempt.
    unsigned calls_ = 0;           ///< To `watch`.
    std::uint64_t round_ = 0;      ///< That of the last call to `watch`.
    Clock::time_point roundStart_; ///< When `watch` was first called in that round.
    curl_socket_t socket_ = CURL_SOCKET_BAD;
    std::uint64_t receivedBefore_ = 0; ///< Over that socket, before the request.
    bool hasResponseBegun_ = false;
    std::uint64_t use_ = 0; ///< Of the connection.
    bool isHTTP2_ = false;
    bool isTruncated_ = false;       ///< Whether a response without a length may be incomplete.
    bool isSent_ = false;            ///< Whether this exchange's request has been sent.
    std::optional<bool> startsHere_; ///< Whether the first server is on this machine.

    ResponseHeader header_;
    ResponseBody body_;

    std::array<char, CURL_ERROR_SIZE> curlError_{};
    CurlEasy easy_; // Last, since it points to the other members.
};

} // namespace Qx::Detail

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

/// One request on its way, redirects and further attempts included: what is sent, under which limits, and what came
/// back so far. It is made in any thread, and from `start` on used by one alone.
class Transfer {
public:
    using Clock = std::chrono::steady_clock;

    /// What is to be done after an exchange with the server.
    enum class Next {
        RESPOND,
        FOLLOW,      ///< Start again at once: the response leads elsewhere, or the connection was not one to use.
        RETRY,       ///< Start again at the time `due`.
        RENEW_TOKEN, ///< Start again with another token, if there is one.
    };

    /// Throws `std::bad_alloc`. `session` has to outlive it.
    Transfer(const HTTPRequest& request, Session& session, TransferThread::ResponseHandler handler);
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    Session& session() const;

    /// The number that its session has given it.
    void setNumber(std::uint64_t number);
    std::uint64_t number() const;

    /// Whether it is to end, since its client says so.
    bool isCancelled() const;

    /// Whether it can't start before `setToken`.
    bool needsToken() const;

    /// The token that the service has refused; empty as long as none was sent.
    const std::string& refusedToken() const;

    /// False if the request has nothing to gain from it, since it was refused before or may not be sent.
    bool setToken(const std::string& token) noexcept;

    /// Whether something is wrong with the request or the response, and to say so.
    bool hasFailed() const;
    void setFailure(const TransferError& error) noexcept;
    void setFailure(FailureKind kind, const char* reason) noexcept;
    void setOutOfMemory() noexcept;

    /// Makes a handle for the next exchange and prepares it. False if there is no memory for that. Each has a handle of
    /// its own, since libcurl keeps the credentials of the one before in it, and may send them once more. `connections`
    /// has to outlive it.
    bool start(Connections& connections);

    /// The handle that `start` made.
    CURL* handle() const;

    /// Lets no other request use the connection, over which the rest of the response may still come.
    void giveUpConnection();

    /// `result` is what became of the handle.
    Next next(CURLcode result) noexcept;

    Clock::time_point due() const;

    /// Responds with what came back, or why nothing did, once.
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
    void meetPeer(const std::string& peer, int peerPort, int localPort);
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
    std::optional<TransferError> error_; ///< What is wrong with the request or the response, if something is.
    bool isOutOfMemory_ = false;

    int attempts_ = 0;
    std::optional<Clock::time_point> attemptStart_; ///< While an attempt is under way.
    Clock::time_point due_;
    Clock::time_point lastProgress_;
    Connections* connections_ = nullptr;
    bool isAllSet_ = true;
    bool isStale_ = false; ///< Whether something came over the connection that nobody had asked for.
    bool takesNewConnection_ = false;
    int redirects_ = 0;
    std::size_t headerBytes_ = 0; ///< Of all responses.
    unsigned calls_ = 0;          ///< Of `watch`.
    std::uint64_t round_ = 0;     ///< That of the last call, and when it was first called in it.
    Clock::time_point roundStart_;
    curl_socket_t socket_ = CURL_SOCKET_BAD;
    std::uint64_t receivedBefore_ = 0; ///< Over that socket, before the request.
    bool hasResponseBegun_ = false;
    std::uint64_t use_ = 0; ///< Of the connection.
    bool isHTTP2_ = false;
    bool isCut_ = false;             ///< Whether a response without a length may lack its end.
    bool isSent_ = false;            ///< Whether this exchange's request has been.
    std::optional<bool> startsHere_; ///< Whether the first server is on this machine.

    ResponseHeader header_;
    ResponseBody body_;

    std::array<char, CURL_ERROR_SIZE> curlError_{};
    CurlEasy easy_; // The last, since it points to all the others.
};

} // namespace Qx::Detail

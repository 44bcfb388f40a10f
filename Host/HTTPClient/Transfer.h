#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"
#include "Host/HTTPClient/Connections.h"
#include "Host/HTTPClient/Curl.h"
#include "Host/HTTPClient/Destination.h"
#include "Host/HTTPClient/ResponseBody.h"
#include "Host/HTTPClient/ResponseHeader.h"
#include "Host/HTTPClient/TransferError.h"
#include "Host/HTTPClient/TransferRules.h"
#include "Host/HTTPClient/TransferThread.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace OrvaneHost {

/// One request on its way, redirects included: what is sent, under which limits, and what came back so far. It is made
/// in any thread, and from `start` on used by one alone.
class Transfer {
public:
    /// Throws `std::bad_alloc`. `rules` has to live as long.
    Transfer(const Qx::HTTPRequest& request, const TransferRules& rules, TransferThread::Answered answered);
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    /// Whether the request may not be sent, and to tell so.
    bool isRefused() const;
    void answerRefusal() noexcept;

    /// Makes a handle for the next request and prepares it. False if there is no memory for that. Each request has a
    /// handle of its own, since libcurl keeps the credentials of the one before in it, and may send them once more.
    /// `connections` has to live as long.
    bool start(Connections& connections);

    /// The handle that `start` made.
    CURL* handle() const;

    /// True if the transfer is to be started again, since the response leads elsewhere, or the connection was not one
    /// to use. `result` is what became of the handle.
    bool goesOn(CURLcode result) noexcept;

    /// Answers with what came back, or why nothing did.
    void answer(CURLcode result) noexcept;
    void answerFailure(FailureKind kind, const char* reason) noexcept;
    void answerOutOfMemory() noexcept;

private:
    template <class Value>
    void set(CURLoption option, Value value);
    void setRequest();
    void setConnection();
    void setLimits();
    void setCallbacks();

    template <auto read>
    static std::size_t receive(char* bytes, std::size_t, std::size_t count, void* transfer) noexcept;
    static int checkConnection(void* transfer, char*, char*, int, int localPort) noexcept;
    static int watch(void* transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t) noexcept;
    template <class Action>
    bool attempt(Action action) noexcept;
    void readHeaderLine(std::string_view line);
    void readBody(std::string_view bytes);
    void checkProgress();
    void checkReceived();

    void redirect();
    template <class MakeResponse>
    void answerWith(MakeResponse makeResponse) noexcept;
    Qx::HTTPResponse responseTo(CURLcode result);

    const TransferRules& rules_;
    TransferThread::Answered answered_;
    Qx::HTTPRequest::Method method_;
    Destination destination_;
    bool sendsToken_ = false;
    CurlHeaders headers_;
    std::optional<TransferError> error_; ///< What is wrong with the request or the answer, if something is.
    bool isOutOfMemory_ = false;

    std::optional<std::chrono::steady_clock::time_point> deadline_; ///< From the first start on.
    Connections* connections_ = nullptr;
    bool isAllSet_ = true;
    bool isStale_ = false; ///< Whether something came over the connection that nobody had asked for.
    bool takesNewConnection_ = false;
    int redirects_ = 0;
    std::size_t headerBytes_ = 0; ///< Of all responses.
    unsigned calls_ = 0;          ///< Of `watch`.
    curl_socket_t socket_ = CURL_SOCKET_BAD;
    std::optional<std::uint64_t> receivedBefore_; ///< By that socket, when it was first asked.
    bool lacksCloseNotify_ = false;               ///< Whether the peer of a TLS connection has not said that it ends.

    ResponseHeader header_;
    ResponseBody body_;

    std::array<char, CURL_ERROR_SIZE> curlError_{};
    CurlEasy easy_; // The last, since it points to all the others.
};

} // namespace OrvaneHost

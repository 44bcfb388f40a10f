#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"
#include "Host/HTTPClient/CurlHTTPClientSettings.h"
#include "Host/HTTPClient/TransferThread.h"

#include <array>
#include <curl/curl.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

// Private to `TransferThread`: with its source one of the places that know libcurl.
namespace OrvaneHost {

template <auto destroy>
struct CurlDeleter {
    template <class Handle>
    void operator()(Handle* handle) const {
        destroy(handle);
    }
};

/// Short enough for a string to hold without memory.
inline constexpr const char* outOfMemory = "out of memory";

using CurlMulti = std::unique_ptr<CURLM, CurlDeleter<curl_multi_cleanup>>;
using CurlEasy = std::unique_ptr<CURL, CurlDeleter<curl_easy_cleanup>>;
using CurlUrl = std::unique_ptr<CURLU, CurlDeleter<curl_url_cleanup>>;
using CurlHeaders = std::unique_ptr<curl_slist, CurlDeleter<curl_slist_free_all>>;

/// One request on its way: what is sent, under which limits, and what came back so far.
class Transfer {
public:
    Transfer(const Qx::HTTPRequest& request, const CurlHTTPClientSettings& settings, TransferThread::Answered answered);
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    /// Why the request may not be sent, in one line; empty if it may.
    const std::string& refusal() const;

    /// Keeps `easy` and prepares it for the request. False if there is no memory for that.
    bool prepare(CurlEasy easy);

    /// The handle that `prepare` was given.
    CURL* handle() const;
    CurlEasy releaseHandle();

    /// Answers with what came back, or why nothing did.
    void answer(CURLcode result) noexcept;
    void answerFailure(std::string_view reason) noexcept;

private:
    enum class Header { AWAITED, OPEN, ENDED };

    template <auto read>
    static std::size_t receive(const char* bytes, std::size_t, std::size_t count, void* transfer) noexcept;
    void readHeaderLine(std::string_view line);
    void startHeader();
    void readHeader(std::string_view line);
    void readBody(std::string_view bytes);
    void reserve(std::size_t more);
    template <class MakeResponse>
    void answerWith(MakeResponse makeResponse) noexcept;
    Qx::HTTPResponse responseTo(CURLcode result);
    std::string reasonFor(CURLcode result) const;

    const CurlHTTPClientSettings& settings_;
    TransferThread::Answered answered_;
    const Qx::HTTPRequest::Method method_;
    CurlUrl url_;
    bool sendsToken_ = false;
    bool isHttps_ = false;
    bool isLocal_ = false;
    std::string refusal_;
    CurlHeaders headers_;

    std::array<char, CURL_ERROR_SIZE> error_{};
    std::size_t headerBytes_ = 0;
    Header header_ = Header::AWAITED;
    std::optional<std::string> length_; ///< As the header that is being read tells it.
    bool isEncoded_ = false;            ///< Whether that header names a transfer coding.
    std::string body_;
    std::string fault_; ///< What is wrong with the answer; empty as long as nothing is.

    CurlEasy easy_; // The last, since it points to all the others.
};

} // namespace OrvaneHost

#include "Host/HTTPClient/Transfer.h"

#include <algorithm>
#include <arpa/inet.h>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <exception>
#include <fmt/format.h>
#include <new>
#include <utility>

namespace OrvaneHost {

namespace {

bool isControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F;
}

bool hasControl(std::string_view text) {
    return std::any_of(text.begin(), text.end(), isControl);
}

std::string partOf(const CurlUrl& url, CURLUPart part) {
    char* text = nullptr;
    if (curl_url_get(url.get(), part, &text, 0) != CURLUE_OK)
        return {};
    return std::unique_ptr<char, CurlDeleter<curl_free>>(text).get();
}

bool isLoopback(const std::string& host) {
    in_addr address{};
    const bool isIPv4 = inet_pton(AF_INET, host.c_str(), &address) == 1;
    return host == "localhost" || host == "[::1]" || (isIPv4 && host.starts_with("127."));
}

// Why a request may not be sent; empty if it may. `url` takes its address.
std::string refusalOf(const Qx::HTTPRequest& request, const CurlUrl& url, std::string_view token) {
    if (hasControl(token))
        return "refused: the token holds a control character";
    if (hasControl(request.getURL()))
        return "refused: the address holds a control character";
    for (const auto& [name, value] : request.getHeaders())
        if (hasControl(name) || hasControl(value) || name.empty() || name.find(':') != std::string::npos)
            return "refused: a header holds a control character, or its name is empty or holds a colon";
    const bool isAddress = curl_url_set(url.get(), CURLUPART_URL, request.getURL().c_str(), 0) == CURLUE_OK;
    const std::string scheme = partOf(url, CURLUPART_SCHEME);
    if (!partOf(url, CURLUPART_USER).empty() || !partOf(url, CURLUPART_PASSWORD).empty())
        return "refused: the address holds a user name or password";
    if (!isAddress || (scheme != "https" && scheme != "http"))
        return fmt::format("refused: \"{}\" is no valid http or https address", request.getURL());
    if (!token.empty() && scheme == "http" && !isLoopback(partOf(url, CURLUPART_HOST)))
        return "refused: the token goes over https only, or to this machine; use an https address";
    return {};
}

CurlHeaders headersOf(const Qx::HTTPRequest& request) {
    CurlHeaders headers;
    for (const auto& [name, value] : request.getHeaders()) {
        // libcurl takes "Name;" for a header without a value, and "Name:" for one to leave out.
        const std::string line = value.empty() ? fmt::format("{};", name) : fmt::format("{}: {}", name, value);
        curl_slist* longer = curl_slist_append(headers.get(), line.c_str());
        if (!longer)
            throw std::bad_alloc();
        static_cast<void>(headers.release());
        headers.reset(longer);
    }
    return headers;
}

} // namespace

Transfer::Transfer(const Qx::HTTPRequest& request, const CurlHTTPClientSettings& settings,
                   TransferThread::Answered answered)
    : settings_(settings),
      answered_(std::move(answered)),
      method_(request.getMethod()),
      url_(curl_url()),
      sendsToken_(request.getAuthType() == Qx::HTTPRequest::AuthType::BEARER && !settings.token.empty()),
      refusal_(refusalOf(request, url_, sendsToken_ ? settings.token : std::string())) {
    if (!refusal_.empty())
        return;
    isHttps_ = partOf(url_, CURLUPART_SCHEME) == "https";
    isLocal_ = isLoopback(partOf(url_, CURLUPART_HOST));
    headers_ = headersOf(request);
}

const std::string& Transfer::refusal() const {
    return refusal_;
}

bool Transfer::prepare(CurlEasy easy) {
    easy_ = std::move(easy);
    bool allSet = true;
    const auto set = [&](CURLoption option, auto value) {
        allSet = allSet && curl_easy_setopt(easy_.get(), option, value) == CURLE_OK;
    };
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // Closing must not wait for a name server.
    set(CURLOPT_ERRORBUFFER, error_.data());

    set(CURLOPT_CURLU, url_.get());
    set(CURLOPT_HTTPHEADER, headers_.get());
    set(CURLOPT_ACCEPT_ENCODING, "");
    if (method_ == Qx::HTTPRequest::Method::POST) {
        set(CURLOPT_POSTFIELDSIZE, 0L);
        set(CURLOPT_POSTFIELDS, "");
    }
    if (!settings_.certificateFile.empty())
        set(CURLOPT_CAINFO, settings_.certificateFile.c_str());
    // libcurl itself leaves the token out where a redirect leads to another host, port or scheme.
    if (sendsToken_) {
        set(CURLOPT_HTTPAUTH, CURLAUTH_BEARER);
        set(CURLOPT_XOAUTH2_BEARER, settings_.token.c_str());
    }
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_POSTREDIR, CURL_REDIR_POST_ALL);
    set(CURLOPT_MAXREDIRS, static_cast<long>(settings_.maxRedirects));
    set(CURLOPT_REDIR_PROTOCOLS_STR, isHttps_ ? "https" : "http,https");
    // A proxy could do nothing for a request to this machine but carry its token away.
    if (isLocal_)
        set(CURLOPT_NOPROXY, "*");

    const auto milliseconds = [](std::chrono::milliseconds time) { return static_cast<long>(time.count()); };
    set(CURLOPT_CONNECTTIMEOUT_MS, milliseconds(settings_.connectTimeout));
    set(CURLOPT_TIMEOUT_MS, milliseconds(settings_.requestTimeout));
    set(CURLOPT_LOW_SPEED_LIMIT, 1L);
    set(CURLOPT_LOW_SPEED_TIME, static_cast<long>(settings_.stallTimeout.count()));
    set(CURLOPT_HEADERFUNCTION, &Transfer::receive<&Transfer::readHeaderLine>);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &Transfer::receive<&Transfer::readBody>);
    set(CURLOPT_WRITEDATA, this);
    return allSet;
}

CURL* Transfer::handle() const {
    return easy_.get();
}

CurlEasy Transfer::releaseHandle() {
    // It points to what dies with this transfer.
    curl_easy_reset(easy_.get());
    return std::move(easy_);
}

// What libcurl calls with a piece of the answer. With a fault in it the transfer is given up, and where there is no
// memory for it.
template <auto read>
std::size_t Transfer::receive(const char* bytes, std::size_t, std::size_t count, void* transfer) noexcept {
    auto& receiver = *static_cast<Transfer*>(transfer);
    try {
        (receiver.*read)({bytes, count});
        return receiver.fault_.empty() ? count : 0;
    } catch (const std::exception&) {
        return 0;
    }
}

// Also called with the headers of redirects, each of which starts with its status line.
void Transfer::readHeaderLine(std::string_view line) {
    headerBytes_ += line.size();
    if (headerBytes_ > settings_.maxHeaderBytes)
        fault_ = fmt::format("the answer's header is longer than {} bytes", settings_.maxHeaderBytes);
    constexpr std::string_view lengthName = "content-length:";
    if (line.starts_with("HTTP/")) {
        headerEnded_ = false;
        length_.reset();
    } else if (line == "\r\n" || line == "\n") {
        headerEnded_ = true;
    } else if (boost::algorithm::istarts_with(line, lengthName)) {
        readLength(line.substr(lengthName.size()));
    }
}

// libcurl goes by one of several lengths; whoever stands between may have gone by another.
void Transfer::readLength(std::string_view value) {
    const std::string length = boost::algorithm::trim_copy(std::string(value));
    const bool isNumber = boost::algorithm::all(length, boost::algorithm::is_digit());
    if (!isNumber || (length_ && *length_ != length))
        fault_ = "the answer does not tell its length clearly";
    length_ = length;
}

// Counts the bytes as decoded: a small compressed body may be huge.
void Transfer::readBody(std::string_view bytes) {
    if (bytes.size() > settings_.maxBodyBytes - body_.size()) {
        fault_ = fmt::format("the answer is longer than {} bytes", settings_.maxBodyBytes);
        return;
    }
    reserve(bytes.size());
    body_.append(bytes);
}

// Growing by copying would hold a large body twice. So beyond a few megabytes all that is permitted is reserved
// at once, if it is to be had: memory that is never written is never used.
void Transfer::reserve(std::size_t more) {
    constexpr std::size_t large = std::size_t{4} << 20;
    const std::size_t needed = body_.size() + more + Qx::HTTPResponse::spareBytes;
    if (needed <= body_.capacity())
        return;
    try {
        if (needed > large) {
            body_.reserve(settings_.maxBodyBytes + Qx::HTTPResponse::spareBytes);
            return;
        }
    } catch (const std::exception&) {
        // The limit is beyond this machine; the body need not be.
    }
    body_.reserve(std::max(needed, 2 * body_.capacity()));
}

void Transfer::answer(CURLcode result) noexcept {
    answerWith([&] { return responseTo(result); });
}

void Transfer::answerFailure(std::string_view reason) noexcept {
    answerWith([&] { return Qx::HTTPResponse::transportFailure(std::string(reason)); });
}

// There is an answer also where there is no memory to make it.
template <class MakeResponse>
void Transfer::answerWith(MakeResponse makeResponse) noexcept {
    Qx::HTTPResponse response;
    try {
        response = makeResponse();
    } catch (const std::exception&) {
        response = Qx::HTTPResponse::transportFailure(outOfMemory);
    }
    answered_(std::move(response));
}

Qx::HTTPResponse Transfer::responseTo(CURLcode result) {
    if (result != CURLE_OK)
        return Qx::HTTPResponse::transportFailure(reasonFor(result));
    if (!headerEnded_)
        return Qx::HTTPResponse::transportFailure("the answer ended within its header");
    long status = 0;
    curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
    return {static_cast<int>(status), std::move(body_)};
}

std::string Transfer::reasonFor(CURLcode result) const {
    if (!fault_.empty())
        return fault_;
    // The server may have had a say in the text.
    std::string reason = error_.front() ? error_.data() : curl_easy_strerror(result);
    std::replace_if(reason.begin(), reason.end(), isControl, ' ');
    return reason;
}

} // namespace OrvaneHost

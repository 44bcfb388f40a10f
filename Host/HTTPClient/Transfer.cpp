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

constexpr const char* headerCutShort = "the answer ended within its header";
constexpr const char* lengthUnclear = "the answer does not tell its length clearly";

bool isControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F;
}

bool hasControl(std::string_view text) {
    return std::any_of(text.begin(), text.end(), isControl);
}

CurlUrl makeUrl() {
    CurlUrl url(curl_url());
    if (!url)
        throw std::bad_alloc();
    return url;
}

// Only what is not there may pass for empty: much hangs on what an address holds.
CURLUcode orBadAlloc(CURLUcode result) {
    if (result == CURLUE_OUT_OF_MEMORY)
        throw std::bad_alloc();
    return result;
}

std::string partOf(const CurlUrl& url, CURLUPart part) {
    char* text = nullptr;
    if (orBadAlloc(curl_url_get(url.get(), part, &text, 0)) != CURLUE_OK)
        return {};
    return std::unique_ptr<char, CurlDeleter<curl_free>>(text).get();
}

bool isLoopback(const std::string& host) {
    in_addr address{};
    const bool isIPv4 = inet_pton(AF_INET, host.c_str(), &address) == 1;
    return host == "localhost" || host == "[::1]" || (isIPv4 && host.starts_with("127."));
}

bool isHeaderName(const std::string& name) {
    return !name.empty() && boost::algorithm::all(name, boost::algorithm::is_from_range('a', 'z') ||
                                                            boost::algorithm::is_from_range('A', 'Z') ||
                                                            boost::algorithm::is_from_range('0', '9') ||
                                                            boost::algorithm::is_any_of("!#$%&'*+-.^_`|~"));
}

bool isBlank(std::string_view text) {
    return boost::algorithm::all(text, boost::algorithm::is_any_of(" \t"));
}

// Why a request may not be sent; empty if it may. `url` takes its address.
std::string refusalOf(const Qx::HTTPRequest& request, const CurlUrl& url, std::string_view token) {
    const std::string& address = request.getURL();
    if (hasControl(token))
        return "refused: the token holds a control character";
    if (hasControl(address))
        return "refused: the address holds a control character";
    for (const auto& [name, value] : request.getHeaders())
        if (!isHeaderName(name) || hasControl(value))
            return "refused: a header's name is none, or its value holds a control character";
    const bool isAddress = orBadAlloc(curl_url_set(url.get(), CURLUPART_URL, address.c_str(), 0)) == CURLUE_OK;
    const std::string scheme = partOf(url, CURLUPART_SCHEME);
    if (!partOf(url, CURLUPART_USER).empty() || !partOf(url, CURLUPART_PASSWORD).empty() ||
        (!isAddress && address.find('@') != std::string::npos))
        return "refused: the address holds a user name or password";
    if (!isAddress || (scheme != "https" && scheme != "http"))
        return fmt::format("refused: \"{}\" is no valid http or https address", address);
    if (!token.empty() && scheme == "http" && !isLoopback(partOf(url, CURLUPART_HOST)))
        return "refused: the token goes over https only, or to this machine; use an https address";
    return {};
}

CurlHeaders headersOf(const Qx::HTTPRequest& request) {
    CurlHeaders headers;
    for (const auto& [name, value] : request.getHeaders()) {
        // libcurl takes "Name;" for a header without a value, and "Name:" for one to leave out.
        const std::string line = isBlank(value) ? fmt::format("{};", name) : fmt::format("{}: {}", name, value);
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
      url_(makeUrl()),
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
    if (!settings_.certificateFile.empty()) {
        set(CURLOPT_CAINFO, settings_.certificateFile.c_str());
        set(CURLOPT_CAPATH, static_cast<const char*>(nullptr)); // The folder of the system's is another default.
    }
    // libcurl itself leaves the token out where a redirect leads to another host, port or scheme.
    if (sendsToken_) {
        set(CURLOPT_HTTPAUTH, CURLAUTH_BEARER);
        set(CURLOPT_XOAUTH2_BEARER, settings_.token.c_str());
    }
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_POSTREDIR, static_cast<long>(CURL_REDIR_POST_ALL));
    set(CURLOPT_MAXREDIRS, static_cast<long>(std::max(settings_.maxRedirects, 0)));
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
        receiver.fault_ = outOfMemory;
        return 0;
    }
}

// Also called with the headers of redirects, each of which starts with its status line. libcurl overlooks some of what
// makes an answer unclear; whoever stands between may have understood it otherwise.
void Transfer::readHeaderLine(std::string_view line) {
    headerBytes_ += line.size();
    if (headerBytes_ > settings_.maxHeaderBytes)
        fault_ = fmt::format("the answer's header is longer than {} bytes", settings_.maxHeaderBytes);
    else if (line.starts_with("HTTP/"))
        startHeader();
    else if (line == "\r\n" || line == "\n")
        header_ = Header::ENDED;
    else
        readHeader(line);
}

void Transfer::startHeader() {
    if (header_ == Header::OPEN)
        fault_ = headerCutShort;
    header_ = Header::OPEN;
    length_.reset();
    isEncoded_ = false;
}

void Transfer::readHeader(std::string_view line) {
    const std::size_t colon = std::min(line.find(':'), line.size());
    const std::string name(line.substr(0, colon));
    if (colon == line.size() || !isHeaderName(name)) {
        fault_ = "the answer holds a header line that is none";
    } else if (boost::algorithm::iequals(name, "transfer-encoding")) {
        isEncoded_ = true;
    } else if (boost::algorithm::iequals(name, "content-length")) {
        const std::string length = boost::algorithm::trim_copy(std::string(line.substr(colon + 1)));
        if (length_.value_or(length) != length || !boost::algorithm::all(length, boost::algorithm::is_digit()))
            fault_ = lengthUnclear;
        length_ = length;
    }
    if (isEncoded_ && length_)
        fault_ = lengthUnclear;
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
    if (header_ != Header::ENDED)
        return Qx::HTTPResponse::transportFailure(headerCutShort);
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

#include "Host/HTTPClient/Transfer.h"

#include "Host/HTTPClient/HTTPText.h"
#include "Host/HTTPClient/Platform.h"

#include <algorithm>
#include <array>
#include <exception>
#include <fmt/format.h>
#include <new>
#include <openssl/ssl.h>
#include <utility>

namespace OrvaneHost {

namespace {

using Headers = std::vector<Qx::HTTPRequest::Header>;

// Short enough for a string to hold without memory.
constexpr const char* outOfMemory = "out of memory";
constexpr const char* cutShort = "the response was cut short";

// What a connection may receive at least, for handshakes and the like.
constexpr std::uint64_t smallestLimit = 65536;

template <std::size_t count>
bool isOneOf(const std::string& name, const std::array<const char*, count>& names) {
    return std::any_of(names.begin(), names.end(), [&](const char* known) { return isSameName(name, known); });
}

bool isCredential(const std::string& name) {
    return isOneOf(name, std::array{"Authorization", "Proxy-Authorization", "Cookie"});
}

// With these a caller could make of one request two, or reach a host that the address does not name.
bool isForClientAlone(const std::string& name) {
    return isOneOf(name, std::array{"Connection", "Content-Length", "Host", "Transfer-Encoding", "Upgrade"});
}

// Why the request may not be sent, in one line; empty if it may.
std::string refusalOf(const Headers& headers, const Destination& destination, bool sendsToken,
                      const TransferRules& rules) {
    std::string refusal = destination.refusal();
    if (refusal.empty() && sendsToken)
        refusal = rules.refusalOfToken(destination);
    for (const auto& [name, value] : headers) {
        if (!refusal.empty())
            break;
        if (!isHeaderName(name) || hasControl(value))
            refusal = "invalid name of a header, or a control character in its value";
        else if (isForClientAlone(name))
            refusal = "the header " + name + " is set by the client alone";
        else if (isCredential(name))
            refusal = rules.refusalOfCredentials(destination, "the header " + name);
    }
    return refusal;
}

CurlHeaders toCurl(const Headers& headers) {
    CurlHeaders list;
    const auto append = [&](const std::string& line) {
        curl_slist* longer = curl_slist_append(list.get(), line.c_str());
        if (!longer)
            throw std::bad_alloc();
        static_cast<void>(list.release());
        list.reset(longer);
    };
    bool namesEncodings = false;
    for (const auto& [name, value] : headers) {
        // libcurl takes "Name;" for a header without a value, and "Name:" for one to leave out.
        append(withoutBlanks(value).empty() ? name + ';' : fmt::format("{}: {}", name, value));
        namesEncodings = namesEncodings || isSameName(name, "Accept-Encoding");
    }
    // libcurl could decode, but does not notice when the encoded stream ends too early.
    if (!namesEncodings)
        append("Accept-Encoding: gzip");
    return list;
}

// Whether this is a TLS connection whose peer has not said that it ends. Only OpenSSL tells.
bool isTlsOpen(CURL* easy) {
    curl_tlssessioninfo* session = nullptr;
    if (curl_easy_getinfo(easy, CURLINFO_TLS_SSL_PTR, &session) != CURLE_OK || !session || !session->internals ||
        session->backend != CURLSSLBACKEND_OPENSSL)
        return false;
    return (SSL_get_shutdown(static_cast<SSL*>(session->internals)) & SSL_RECEIVED_SHUTDOWN) == 0;
}

bool hasConnected(CURL* easy) {
    curl_off_t time = 0;
    curl_easy_getinfo(easy, CURLINFO_PRETRANSFER_TIME_T, &time);
    return time > 0;
}

FailureKind kindOf(CURLcode result, CURL* easy) {
    switch (result) {
    case CURLE_OPERATION_TIMEDOUT:
        return hasConnected(easy) ? FailureKind::TIMEOUT : FailureKind::NETWORK;
    case CURLE_OUT_OF_MEMORY:
        return FailureKind::OUT_OF_MEMORY;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CONNECT_ERROR:
        return FailureKind::TLS;
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
        return FailureKind::MALFORMED;
    default:
        return FailureKind::NETWORK;
    }
}

} // namespace

Transfer::Transfer(const Qx::HTTPRequest& request, const TransferRules& rules, TransferThread::Answered answered)
    : rules_(rules),
      answered_(std::move(answered)),
      method_(request.getMethod()),
      destination_(request.getURL()),
      sendsToken_(request.getAuthType() == Qx::HTTPRequest::AuthType::BEARER && !rules.settings().token.empty()) {
    const std::string refusal = refusalOf(request.getHeaders(), destination_, sendsToken_, rules_);
    if (refusal.empty())
        headers_ = toCurl(request.getHeaders());
    else
        error_.emplace(FailureKind::NOT_ALLOWED, "refused: " + refusal);
}

bool Transfer::isRefused() const {
    return error_.has_value();
}

void Transfer::answerRefusal() noexcept {
    answer(CURLE_OK);
}

bool Transfer::start(Connections& connections) {
    connections_ = &connections;
    easy_.reset(curl_easy_init());
    if (!easy_ || !connections.attach(easy_.get()))
        return false;
    header_ = ResponseHeader();
    gzip_.reset();
    socket_ = CURL_SOCKET_BAD;
    setRequest();
    setConnection();
    setLimits();
    setCallbacks();
    return isAllSet_;
}

template <class Value>
void Transfer::set(CURLoption option, Value value) {
    isAllSet_ = isAllSet_ && curl_easy_setopt(easy_.get(), option, value) == CURLE_OK;
}

void Transfer::setRequest() {
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // Closing must not wait for a name server.
    set(CURLOPT_ERRORBUFFER, curlError_.data());
    set(CURLOPT_CURLU, destination_.url());
    set(CURLOPT_HTTPHEADER, headers_.get());
    if (method_ == Qx::HTTPRequest::Method::POST) {
        set(CURLOPT_POSTFIELDSIZE, 0L);
        set(CURLOPT_POSTFIELDS, "");
    }
    if (sendsToken_) {
        set(CURLOPT_HTTPAUTH, CURLAUTH_BEARER);
        set(CURLOPT_XOAUTH2_BEARER, rules_.settings().token.c_str());
    }
}

void Transfer::setConnection() {
    // A proxy could do nothing for a request to this machine but carry its token away.
    if (destination_.isLocal())
        set(CURLOPT_NOPROXY, "*");
    // libcurl sends a request again whose connection ends without a response, if that was not new.
    if (takesNewConnection_ || method_ == Qx::HTTPRequest::Method::POST)
        set(CURLOPT_FRESH_CONNECT, 1L);
    set(CURLOPT_PREREQFUNCTION, &Transfer::checkConnection);
    set(CURLOPT_PREREQDATA, this);
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    // Over HTTP/2 libcurl takes a body for whole when its connection ends in the midst of it.
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_PROXY_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    if (const std::string& file = rules_.settings().certificateFile; !file.empty()) {
        set(CURLOPT_CAINFO, file.c_str());
        set(CURLOPT_CAPATH, static_cast<const char*>(nullptr)); // The folder of the system's is another default.
        set(CURLOPT_PROXY_CAINFO, file.c_str());
        set(CURLOPT_PROXY_CAPATH, static_cast<const char*>(nullptr));
    }
}

void Transfer::setLimits() {
    using std::chrono::milliseconds;
    const CurlHTTPClientSettings& settings = rules_.settings();
    const auto now = std::chrono::steady_clock::now();
    if (!deadline_)
        deadline_ = now + settings.requestTimeout;
    // None left is the least there is: to libcurl, 0 is without a limit.
    const milliseconds left = std::max(std::chrono::duration_cast<milliseconds>(*deadline_ - now), milliseconds(1));
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(left.count()));
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(settings.connectTimeout.count()));
    set(CURLOPT_LOW_SPEED_LIMIT, 1L);
    set(CURLOPT_LOW_SPEED_TIME, static_cast<long>(settings.stallTimeout.count()));
}

void Transfer::setCallbacks() {
    set(CURLOPT_HEADERFUNCTION, &Transfer::receive<&Transfer::readHeaderLine>);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &Transfer::receive<&Transfer::readBody>);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_XFERINFOFUNCTION, &Transfer::watch);
    set(CURLOPT_XFERINFODATA, this);
    set(CURLOPT_NOPROGRESS, 0L);
}

CURL* Transfer::handle() const {
    return easy_.get();
}

// False once the transfer has failed: then it is given up.
template <class Action>
bool Transfer::attempt(Action action) noexcept {
    try {
        if (!error_ && !isOutOfMemory_)
            action();
    } catch (const TransferError& error) {
        error_ = error;
    } catch (const std::exception&) {
        isOutOfMemory_ = true;
    }
    return !error_ && !isOutOfMemory_;
}

// What libcurl calls with a piece of the response.
template <auto read>
std::size_t Transfer::receive(char* bytes, std::size_t, std::size_t count, void* transfer) noexcept {
    auto& receiver = *static_cast<Transfer*>(transfer);
    return receiver.attempt([&] { (receiver.*read)({bytes, count}); }) ? count : 0;
}

// What libcurl calls before it sends a request. It would use a connection on which something has come, and take that
// for the response.
int Transfer::checkConnection(void* transfer, char*, char*, int, int localPort) noexcept {
    auto& user = *static_cast<Transfer*>(transfer);
    user.socket_ = user.connections_->socketFrom(localPort);
    user.receivedBefore_ = countReceived(user.socket_);
    user.isStale_ = !user.connections_->isQuiet(user.socket_);
    return user.isStale_ ? CURL_PREREQFUNC_ABORT : CURL_PREREQFUNC_OK;
}

// What libcurl calls again and again, the last time before it closes the connection.
int Transfer::watch(void* transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t) noexcept {
    auto& watched = *static_cast<Transfer*>(transfer);
    if (watched.header_.endsWithConnection())
        watched.isTlsOpen_ = isTlsOpen(watched.easy_.get());
    const bool isGood = watched.attempt([&] { watched.checkReceived(); });
    return isGood ? 0 : 1;
}

void Transfer::readHeaderLine(std::string_view line) {
    const std::size_t limit = rules_.settings().maxHeaderBytes;
    headerBytes_ += line.size();
    if (headerBytes_ > limit)
        throw TransferError(FailureKind::MALFORMED, fmt::format("the header is longer than {} bytes", limit));
    header_.readLine(line);
}

void Transfer::readBody(std::string_view bytes) {
    receivedBytes_ += bytes.size();
    checkReceived();
    if (!header_.redirection().empty())
        return;
    if (header_.isGzip() && !gzip_)
        gzip_ = std::make_unique<GzipDecoder>();
    if (gzip_)
        gzip_->decode(bytes, [this](std::string_view decoded) { keep(decoded); });
    else
        keep(bytes);
}

// By the socket too, since libcurl shows nobody what stands between chunks, and overlooks parts of a header. It counts
// what frames and encrypts the body, for which there is an eighth more.
void Transfer::checkReceived() {
    const CurlHTTPClientSettings& settings = rules_.settings();
    const std::uint64_t limit = settings.maxBodyBytes;
    const std::uint64_t bySocket = socket_ == CURL_SOCKET_BAD ? 0 : countReceived(socket_) - receivedBefore_;
    if (receivedBytes_ > limit || bySocket > limit + limit / 8 + settings.maxHeaderBytes + smallestLimit)
        throw TransferError(FailureKind::TOO_LARGE, fmt::format("the response is longer than {} bytes", limit));
    if (connections_->isOverdue())
        throw TransferError(FailureKind::TIMEOUT, "the response comes without a pause, but does not end");
}

void Transfer::keep(std::string_view decoded) {
    const std::size_t limit = rules_.settings().maxBodyBytes;
    if (decoded.size() > limit - body_.size())
        throw TransferError(FailureKind::TOO_LARGE, fmt::format("the response is longer than {} bytes", limit));
    reserve(decoded.size());
    body_.append(decoded);
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
            body_.reserve(rules_.settings().maxBodyBytes + Qx::HTTPResponse::spareBytes);
            return;
        }
    } catch (const std::exception&) {
        // The limit is beyond this machine; the body need not be.
    }
    body_.reserve(std::max(needed, 2 * body_.capacity()));
}

bool Transfer::goesOn(CURLcode result) noexcept {
    takesNewConnection_ = std::exchange(isStale_, false);
    if (takesNewConnection_)
        return true;
    if (result != CURLE_OK || !header_.hasEnded() || header_.redirection().empty())
        return false;
    return attempt([this] { redirect(); });
}

void Transfer::redirect() {
    const auto refuse = [](const std::string& reason) {
        throw TransferError(FailureKind::NOT_ALLOWED, "refused to follow a redirect: " + reason);
    };
    if (redirects_++ >= rules_.settings().maxRedirects)
        refuse(fmt::format("there are more than {}", std::max(rules_.settings().maxRedirects, 0)));
    Destination next = destination_.redirected(header_.redirection());
    if (!next.refusal().empty())
        refuse(next.refusal());
    if (destination_.isHttps() && !next.isHttps())
        refuse("it leads from https to http");
    if (!destination_.isLocal() && next.isLocal())
        refuse("it leads to this machine");
    easy_.reset(); // It points to what changes now.
    // What the caller meant for one server is none of another's business.
    if (!next.isSameOrigin(destination_)) {
        sendsToken_ = false;
        headers_ = toCurl({});
    }
    destination_ = std::move(next);
    if (header_.status() == 303)
        method_ = Qx::HTTPRequest::Method::GET;
}

void Transfer::answer(CURLcode result) noexcept {
    answerWith([&] { return responseTo(result); });
}

void Transfer::answerFailure(FailureKind kind, const char* reason) noexcept {
    answerWith([&] { return Qx::HTTPResponse::transportFailure(kind, reason); });
}

void Transfer::answerOutOfMemory() noexcept {
    answerFailure(FailureKind::OUT_OF_MEMORY, outOfMemory);
}

// There is an answer also where there is no memory to make it.
template <class MakeResponse>
void Transfer::answerWith(MakeResponse makeResponse) noexcept {
    Qx::HTTPResponse response;
    try {
        response = makeResponse();
    } catch (const std::exception&) {
        response = Qx::HTTPResponse::transportFailure(FailureKind::OUT_OF_MEMORY, outOfMemory);
    }
    answered_(std::move(response));
}

Qx::HTTPResponse Transfer::responseTo(CURLcode result) {
    using Qx::HTTPResponse;
    if (isOutOfMemory_)
        return HTTPResponse::transportFailure(FailureKind::OUT_OF_MEMORY, outOfMemory);
    if (error_)
        return HTTPResponse::transportFailure(error_->kind(), error_->what());
    if (result != CURLE_OK)
        return HTTPResponse::transportFailure(kindOf(result, easy_.get()), reasonFor(result));
    const bool isConnectionCut = header_.endsWithConnection() && isTlsOpen_;
    if (!header_.hasEnded() || isConnectionCut || (gzip_ && !gzip_->isComplete()))
        return HTTPResponse::transportFailure(FailureKind::NETWORK, cutShort);
    return {header_.status(), std::move(body_)};
}

// libcurl's own words are used where they can hold nothing of a proxy's password.
std::string Transfer::reasonFor(CURLcode result) const {
    const std::string place = redirects_ == 0 ? destination_.name() : "where a redirect leads";
    std::string reason = curl_easy_strerror(result);
    if (result == CURLE_COULDNT_RESOLVE_HOST)
        reason = "can't find " + place;
    else if (result == CURLE_COULDNT_RESOLVE_PROXY)
        reason = "can't find the proxy";
    else if (result == CURLE_COULDNT_CONNECT)
        reason = "can't connect to " + place;
    else if (result == CURLE_OPERATION_TIMEDOUT && !hasConnected(easy_.get()))
        reason = "can't connect to " + place + " in time";
    else if (result != CURLE_NOT_BUILT_IN && result != CURLE_URL_MALFORMAT && curlError_.front())
        reason = curlError_.data();
    // The server has a say in some of them, and knows the token. Shorter ones are no secrets, but parts of words.
    constexpr std::size_t secretFrom = 8;
    const std::string& token = rules_.settings().token;
    if (token.size() >= secretFrom && reason.find(token) != std::string::npos)
        reason = curl_easy_strerror(result);
    std::replace_if(reason.begin(), reason.end(), isControl, ' ');
    return reason;
}

} // namespace OrvaneHost

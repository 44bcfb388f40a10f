#include "HTTPClient/Detail/Transfer.h"

#include "HTTPClient/Detail/CurlAttempt.h"
#include "HTTPClient/Detail/CurlFailure.h"
#include "HTTPClient/Detail/CurlTLS.h"
#include "HTTPClient/Detail/HTTPText.h"
#include "HTTPClient/Detail/Retry.h"
#include "HTTPClient/Detail/Sockets.h"

#include <algorithm>
#include <exception>
#include <fmt/format.h>
#include <new>
#include <utility>

namespace Qx::Detail {

namespace {

using Headers = std::vector<HTTPRequest::Header>;

// Short enough for std::string to hold without an allocation.
constexpr const char* outOfMemory = "out of memory";
constexpr const char* cutShort = "the response was cut short";

// Bytes that a connection may receive outside any response.
constexpr double forHandshakes = 65536;

[[noreturn]] void failRedirect(const std::string& reason) {
    throw TransferError(FailureKind::REFUSED, "redirect not followed: " + reason);
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
        // To libcurl, "Name;" is a header with an empty value, and "Name:" a header to omit.
        append(withoutBlanks(value).empty() ? name + ';' : fmt::format("{}: {}", name, value));
        namesEncodings = namesEncodings || isSameName(name, "Accept-Encoding");
    }
    // libcurl could decode the body, but does not notice if the encoded stream ends too early.
    if (!namesEncodings)
        append("Accept-Encoding: gzip");
    return list;
}

} // namespace

Transfer::Transfer(const HTTPRequest& request, Session& session, TransferThread::ResponseHandler handler)
    : session_(session),
      options_(session.rules.options()),
      handler_(std::move(handler)),
      requestedMethod_(request.getMethod()),
      method_(request.getMethod()),
      destination_(request.getURL()),
      sendsToken_(session.rules.sendsToken(request)),
      hasToken_(!options_.tokenSource),
      token_(options_.tokenSource ? std::string() : options_.token),
      body_(options_.maxBodyBytes) {
    const std::string refusal = session.rules.refusalOf(request, destination_);
    if (refusal.empty())
        headers_ = toCurl(request.getHeaders());
    else
        error_.emplace(FailureKind::REFUSED, refusal);
}

Session& Transfer::session() const {
    return session_;
}

void Transfer::setNumber(std::uint64_t number) {
    number_ = number;
}

std::uint64_t Transfer::number() const {
    return number_;
}

bool Transfer::isCancelled() const {
    return number_ <= session_.cancelled;
}

bool Transfer::needsToken() const {
    return sendsToken_ && !hasToken_;
}

const std::string& Transfer::refusedToken() const {
    return refusedToken_;
}

bool Transfer::setToken(const std::string& token) noexcept {
    hasToken_ = true;
    if (attempts_ > 0 && (token == refusedToken_ || token.empty()))
        return false;
    return attempt([&] {
        if (const std::string refusal = refusalOfToken(token); !refusal.empty())
            throw TransferError(FailureKind::REFUSED, refusal);
        token_ = token;
    });
}

bool Transfer::hasFailed() const {
    return error_.has_value() || isOutOfMemory_;
}

void Transfer::setFailure(const TransferError& error) noexcept {
    attempt([&] { throw error; });
}

void Transfer::setFailure(FailureKind kind, const char* reason) noexcept {
    attempt([&] { throw TransferError(kind, reason); });
}

void Transfer::setOutOfMemory() noexcept {
    isOutOfMemory_ = true;
}

bool Transfer::start(Connections& connections) {
    connections_ = &connections;
    easy_.reset(curl_easy_init());
    if (!easy_ || !connections.attach(easy_.get()))
        return false;
    header_ = ResponseHeader();
    socket_ = CURL_SOCKET_BAD;
    use_ = 0;
    isHTTP2_ = false;
    isTruncated_ = false;
    isSent_ = false;
    if (!attemptStart_) {
        attemptStart_ = Clock::now();
        ++attempts_;
        error_.reset();
        body_ = ResponseBody(options_.maxBodyBytes);
        headerBytes_ = 0;
        hasResponseBegun_ = false;
    }
    setRequest();
    setConnection();
    setProxy();
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
    if (method_ == HTTPRequest::Method::POST) {
        set(CURLOPT_POSTFIELDSIZE, 0L);
        set(CURLOPT_POSTFIELDS, "");
    }
    if (sendsToken_ && !token_.empty()) {
        set(CURLOPT_HTTPAUTH, CURLAUTH_BEARER);
        set(CURLOPT_XOAUTH2_BEARER, token_.c_str());
    }
    if (!options_.userAgent.empty())
        set(CURLOPT_USERAGENT, options_.userAgent.c_str());
}

void Transfer::setConnection() {
    // libcurl resends a request if a reused connection ends without a response.
    if (takesNewConnection_ || method_ == HTTPRequest::Method::POST)
        set(CURLOPT_FRESH_CONNECT, 1L);
    set(CURLOPT_PREREQFUNCTION, &Transfer::checkConnection);
    set(CURLOPT_PREREQDATA, this);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L); // A proxy's response is not the server's.
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    // Only OpenSSL reports which protocol was chosen, and how the connection ended.
    set(CURLOPT_HTTP_VERSION, static_cast<long>(runsOnOpenSSL() ? CURL_HTTP_VERSION_2TLS : CURL_HTTP_VERSION_1_1));
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_PROXY_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    // Schannel checks for revoked certificates, and would fail if no revocation server answers.
    set(CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_REVOKE_BEST_EFFORT));
    if (const std::string& file = options_.certificateFile; !file.empty()) {
        set(CURLOPT_CAINFO, file.c_str());
        // Other TLS libraries support neither certificate folders nor TLS to a proxy.
        if (runsOnOpenSSL()) {
            // By default, the certificates in the system's folder would be trusted too.
            set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
            set(CURLOPT_PROXY_CAINFO, file.c_str());
            set(CURLOPT_PROXY_CAPATH, static_cast<const char*>(nullptr));
        }
    }
}

void Transfer::setProxy() {
    // For a request to this machine, a proxy could do nothing except leak its token.
    if (destination_.isLocal())
        set(CURLOPT_NOPROXY, "*");
    else if (options_.proxy) // For all other machines, whatever `no_proxy` says.
        set(CURLOPT_NOPROXY, "");
    if (options_.proxy)
        set(CURLOPT_PROXY, options_.proxy->c_str());
}

void Transfer::setLimits() {
    using std::chrono::milliseconds;
    const auto left = std::chrono::duration_cast<milliseconds>(*attemptStart_ + options_.requestTimeout - Clock::now());
    // At least 1 ms, even if no time is left: to libcurl, 0 means no limit.
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(std::max(left, milliseconds(1)).count()));
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(options_.connectTimeout.count()));
    set(CURLOPT_LOW_SPEED_LIMIT, 1L);
    set(CURLOPT_LOW_SPEED_TIME, static_cast<long>(options_.stallTimeout.count()));
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

// Runs the action unless the transfer has already failed. Returns whether the transfer is still
// free of failures.
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

// Called by libcurl with a piece of the response.
template <auto read>
std::size_t Transfer::receive(char* bytes, std::size_t, std::size_t count, void* transfer) noexcept {
    auto& receiver = *static_cast<Transfer*>(transfer);
    const bool isGood = receiver.attempt([&] { (receiver.*read)({bytes, count}); });
    if (!isGood)
        receiver.abandonConnection();
    return isGood ? count : 0;
}

// Called by libcurl before it sends a request. libcurl itself would use a connection that has
// already received data, and take that data for the response.
int Transfer::checkConnection(void* transfer, char* peer, char*, int peerPort, int localPort) noexcept {
    auto& user = *static_cast<Transfer*>(transfer);
    if (!user.attempt([&] { user.checkPeer(peer, peerPort, localPort); }))
        return CURL_PREREQFUNC_ABORT;
    const bool isTLS = user.destination_.isHttps();
    // In HTTP/2, incoming data says which request it belongs to, and may arrive at any time.
    user.isHTTP2_ = speaksHTTP2(user.easy_.get());
    if (user.isHTTP2_)
        return CURL_PREREQFUNC_OK;
    if (user.connections_->isQuiet(user.socket_, isTLS) && !(isTLS && hasDataInTLS(user.easy_.get())))
        return CURL_PREREQFUNC_OK;
    user.isStale_ = !user.takesNewConnection_;
    if (!user.isStale_)
        user.setFailure(FailureKind::MALFORMED_RESPONSE, "the response arrived before the request was sent");
    return CURL_PREREQFUNC_ABORT;
}

// Called by libcurl repeatedly, the last time before it closes the connection.
int Transfer::watch(void* transfer, curl_off_t total, curl_off_t received, curl_off_t, curl_off_t) noexcept {
    auto& watched = *static_cast<Transfer*>(transfer);
    // An HTTP/2 stream has an explicit end, without which libcurl reports a failure.
    if (watched.header_.endsWithConnection() && !watched.isHTTP2_)
        watched.isTruncated_ = lacksCloseNotify(watched.easy_.get());
    watched.reportProgress(total, received);
    const bool isGood = watched.attempt([&] { watched.checkProgress(); });
    if (!isGood)
        watched.abandonConnection();
    return isGood ? 0 : 1;
}

void Transfer::abandonConnection() {
    curl_easy_setopt(easy_.get(), CURLOPT_FORBID_REUSE, 1L);
}

void Transfer::checkPeer(const std::string& peer, int peerPort, int localPort) {
    socket_ = connections_->find(localPort, peer, peerPort);
    receivedBefore_ = socket_ == CURL_SOCKET_BAD ? 0 : countReceived(socket_);
    use_ = connections_->take(socket_);
    // A redirect may lead to this machine by a name that only the resolver recognises. A peer on
    // another port is a proxy, which may be on this machine.
    const bool isDirect = destination_.port() == std::to_string(peerPort);
    const bool isHere = isDirect && (isLoopback(peer) || peer.starts_with("::ffff:127."));
    startsHere_ = startsHere_.value_or(isHere);
    if (isHere && !*startsHere_)
        failRedirect("it leads to this machine");
    // libcurl would send the request again if the server refused the HTTP/2 stream.
    if (std::exchange(isSent_, true) && method_ == HTTPRequest::Method::POST)
        throw TransferError(FailureKind::NETWORK, "the server did not accept the request");
}

void Transfer::readHeaderLine(std::string_view line) {
    const std::size_t limit = options_.maxHeaderBytes;
    headerBytes_ += line.size();
    if (headerBytes_ > limit)
        throw TransferError(FailureKind::MALFORMED_RESPONSE, fmt::format("the header is longer than {} bytes", limit));
    header_.readLine(line, isHTTP2_);
}

void Transfer::readBody(std::string_view bytes) {
    if (header_.redirection().empty())
        body_.append(bytes, header_.isGzip(), [this] { checkCancelled(); });
    else
        body_.skip(bytes);
}

void Transfer::checkProgress() {
    // libcurl passes on complete lines only, so the bytes on the socket show whether a response has
    // begun. The end of the connection counts as one byte, and over TLS, bytes need not belong to a
    // response.
    if (headerBytes_ == 0 && socket_ != CURL_SOCKET_BAD && !destination_.isHttps())
        hasResponseBegun_ = countReceived(socket_) > receivedBefore_ + 1;
    // Ask the system only once every few calls: most responses end before that.
    constexpr unsigned now = 8;
    if (++calls_ % now == 0 && socket_ != CURL_SOCKET_BAD)
        checkReceived();
    checkCancelled();
    checkPace();
}

void Transfer::checkCancelled() const {
    if (isCancelled())
        throw cancellation();
}

// A peer that never pauses would keep libcurl in one call, and all other transfers waiting.
void Transfer::checkPace() {
    const Clock::time_point now = Clock::now();
    if (std::exchange(round_, connections_->round()) != connections_->round())
        roundStart_ = now;
    if (now - roundStart_ > std::max<std::chrono::milliseconds>(options_.connectTimeout, std::chrono::seconds(1)))
        throw TransferError(FailureKind::TIMEOUT, "the response keeps coming without a pause and does not end");
}

// Bytes are also counted at the socket, since libcurl hides what comes between chunks, and
// overlooks parts of a header. Framing and encryption add to the size of the body, so the limit is
// higher.
void Transfer::checkReceived() {
    const double limit = 1.125 * static_cast<double>(options_.maxBodyBytes) +
                         static_cast<double>(options_.maxHeaderBytes) + forHandshakes;
    const std::uint64_t received = countReceived(socket_);
    // Once the connection has ended, the system no longer reports a count.
    receivedBefore_ = std::min(received, receivedBefore_);
    if (static_cast<double>(received - receivedBefore_) > limit)
        body_.failTooLarge();
}

Transfer::Next Transfer::next(CURLcode result) noexcept {
    // libcurl would keep an HTTP/2 connection even if the server has fallen silent on it.
    if (isHTTP2_ && result != CURLE_OK)
        connections_->abandon(socket_, use_);
    takesNewConnection_ = std::exchange(isStale_, false);
    if (takesNewConnection_)
        return Next::FOLLOW;
    Next next = Next::RESPOND;
    attempt([&] { next = decide(result); });
    if (next == Next::FOLLOW)
        return next;
    reportAttempt();
    if (next == Next::RESPOND && isWorthARetry() && setDue())
        next = Next::RETRY;
    attemptStart_.reset();
    // While the transfer waits, another thread may end it, but only the transfer thread may touch
    // what the handles share.
    if (next != Next::RESPOND)
        easy_.reset();
    return next;
}

// Throws `TransferError` if something is wrong with the response.
Transfer::Next Transfer::decide(CURLcode result) {
    const std::string detail = result == CURLE_COULDNT_CONNECT ? connections_->openFailure() : curlError_.data();
    if (result != CURLE_OK)
        throw explain(result, easy_.get(), detail, {token_, refusedToken_});
    if (header_.hasEnded() && !header_.redirection().empty()) {
        redirect();
        return Next::FOLLOW;
    }
    if (!header_.hasEnded() || isTruncated_ || !body_.isComplete())
        throw TransferError(FailureKind::NETWORK, cutShort);
    constexpr int unauthorized = 401;
    if (header_.status() != unauthorized || !sendsToken_ || !options_.tokenSource || !refusedToken_.empty())
        return Next::RESPOND;
    refusedToken_ = token_;
    hasToken_ = refusedToken_.empty(); // If none was sent, none was refused.
    return hasToken_ ? Next::RESPOND : Next::RENEW_TOKEN;
}

bool Transfer::isWorthARetry() const {
    if (requestedMethod_ != HTTPRequest::Method::GET || attempts_ > options_.maxRetries || isOutOfMemory_)
        return false;
    if (error_)
        return error_->kind() == FailureKind::NETWORK && headerBytes_ == 0 && !hasResponseBegun_;
    return isTransient(header_.status());
}

// Returns false if the server asks for too long a wait.
bool Transfer::setDue() {
    const std::optional<std::chrono::seconds> asked = error_ ? std::nullopt : retryAfter(header_.field("Retry-After"));
    if (asked > options_.maxRetryAfter)
        return false;
    due_ = Clock::now() + (asked ? *asked : timeBeforeRetry(attempts_, options_.retryDelay));
    return true;
}

Transfer::Clock::time_point Transfer::due() const {
    return due_;
}

void Transfer::redirect() {
    if (redirects_++ >= options_.maxRedirects)
        failRedirect(fmt::format("there are more than {}", std::max(options_.maxRedirects, 0)));
    Destination next = destination_.redirected(header_.redirection());
    if (!next.refusal().empty())
        failRedirect(next.refusal());
    if (destination_.isHttps() && !next.isHttps())
        failRedirect("it leads from https to http");
    if (!destination_.isLocal() && next.mayBeLocal())
        failRedirect("it leads to this machine");
    easy_.reset(); // It points to members that change below.
    // The token and the headers are meant for the original server only.
    if (!next.isSameOrigin(destination_)) {
        sendsToken_ = false;
        headers_ = toCurl({});
    }
    destination_ = std::move(next);
    if (header_.status() == 303)
        method_ = HTTPRequest::Method::GET;
}

void Transfer::reportProgress(curl_off_t total, curl_off_t received) noexcept {
    constexpr auto interval = std::chrono::milliseconds(100);
    const Clock::time_point now = Clock::now();
    const bool isSuccessful = header_.status() / 100 == 2;
    if (!options_.onProgress || received <= 0 || !isSuccessful || now - lastProgress_ < interval)
        return;
    lastProgress_ = now;
    try {
        HTTPProgress progress{shownURL(), static_cast<std::uint64_t>(received), {}};
        if (total > 0)
            progress.total = static_cast<std::uint64_t>(total);
        options_.onProgress(progress);
    } catch (...) {
        // Exceptions from the callback are ignored.
    }
}

void Transfer::reportAttempt() noexcept {
    if (!options_.onAttempt)
        return;
    try {
        HTTPAttempt attempt = measureExchange(easy_.get());
        attempt.method = method_;
        attempt.url = shownURL();
        attempt.number = attempts_;
        attempt.status = hasFailed() ? 0 : header_.status();
        attempt.failureKind = isOutOfMemory_ ? FailureKind::OUT_OF_MEMORY : error_ ? error_->kind() : FailureKind::NONE;
        attempt.reason = isOutOfMemory_ ? outOfMemory : error_ ? error_->what() : "";
        attempt.total = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - *attemptStart_);
        attempt.protocol = header_.protocol();
        options_.onAttempt(attempt);
    } catch (...) {
        // Exceptions from the callback are ignored.
    }
}

// Responds with this error, whatever the state of the transfer.
template <class MakeError>
void Transfer::fail(MakeError makeError) noexcept {
    error_.reset();
    attempt([&] { throw makeError(); });
    if (attemptStart_)
        reportAttempt();
    respond();
}

void Transfer::respondFailure(FailureKind kind, const char* reason) noexcept {
    fail([&] { return TransferError(kind, reason); });
}

TransferError Transfer::cancellation() const {
    if (session_.isClosed)
        return {FailureKind::CLOSED, "the HTTP client was destroyed before the response arrived"};
    return {FailureKind::CANCELLED, "the request was cancelled"};
}

void Transfer::respondCancelled() noexcept {
    fail([this]() -> TransferError { return cancellation(); });
}

void Transfer::respondOutOfMemory() noexcept {
    isOutOfMemory_ = true;
    if (attemptStart_)
        reportAttempt();
    respond();
}

// Responds even when memory runs out.
void Transfer::respond() noexcept {
    HTTPResponse response;
    try {
        response = makeResponse();
    } catch (const std::exception&) {
        response = HTTPResponse::transportFailure(FailureKind::OUT_OF_MEMORY, outOfMemory);
    }
    handler_(std::move(response));
}

HTTPResponse Transfer::makeResponse() {
    if (isOutOfMemory_)
        return HTTPResponse::transportFailure(FailureKind::OUT_OF_MEMORY, outOfMemory);
    if (error_ && !place().empty())
        return HTTPResponse::transportFailure(error_->kind(), fmt::format("{} ({})", error_->what(), place()));
    if (error_)
        return HTTPResponse::transportFailure(error_->kind(), error_->what());
    return {header_.status(), body_.take(), header_.takeFields()};
}

// Where the request went, for display. The server chooses the host of a redirect, which may be any
// text.
std::string Transfer::place() const {
    return redirects_ == 0 ? destination_.name() : "the target of a redirect";
}

// For a log. The server also chooses the path of a redirect, which may repeat secrets from the
// request.
std::string Transfer::shownURL() const {
    std::string url = redirects_ == 0 ? destination_.withoutValues() : destination_.name();
    return holdsSecret(url, {token_, refusedToken_}) ? "a URL that contains the token" : url;
}

} // namespace Qx::Detail

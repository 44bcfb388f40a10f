#include "Host/HTTPClient/Transfer.h"

#include "Host/HTTPClient/CurlFailure.h"
#include "Host/HTTPClient/HTTPText.h"
#include "Host/HTTPClient/Platform.h"

#include <algorithm>
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

// Bytes that a connection may receive that are part of no response.
constexpr double forHandshakes = 65536;

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

// Whether this is a TLS connection whose peer has not said that it ends, as it does with "close_notify". Only OpenSSL
// tells.
bool lacksCloseNotify(CURL* easy) {
    curl_tlssessioninfo* session = nullptr;
    if (curl_easy_getinfo(easy, CURLINFO_TLS_SSL_PTR, &session) != CURLE_OK || !session || !session->internals ||
        session->backend != CURLSSLBACKEND_OPENSSL)
        return false;
    return (SSL_get_shutdown(static_cast<SSL*>(session->internals)) & SSL_RECEIVED_SHUTDOWN) == 0;
}

} // namespace

Transfer::Transfer(const Qx::HTTPRequest& request, const TransferRules& rules, TransferThread::Answered answered)
    : rules_(rules),
      answered_(std::move(answered)),
      method_(request.getMethod()),
      destination_(request.getURL()),
      sendsToken_(rules.sendsToken(request)),
      body_(rules.settings().maxBodyBytes) {
    const std::string refusal = rules.refusalOf(request, destination_);
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
    user.socket_ = user.connections_->find(localPort);
    user.receivedBefore_.reset();
    user.isStale_ = !user.connections_->isQuiet(user.socket_) && !user.takesNewConnection_;
    return user.isStale_ ? CURL_PREREQFUNC_ABORT : CURL_PREREQFUNC_OK;
}

// What libcurl calls again and again, the last time before it closes the connection.
int Transfer::watch(void* transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t) noexcept {
    auto& watched = *static_cast<Transfer*>(transfer);
    if (watched.header_.endsWithConnection())
        watched.lacksCloseNotify_ = lacksCloseNotify(watched.easy_.get());
    const bool isGood = watched.attempt([&] { watched.checkProgress(); });
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
    if (header_.redirection().empty())
        body_.append(bytes, header_.isGzip());
    else
        body_.skip(bytes);
}

void Transfer::checkProgress() {
    // The system is asked now and then: most responses end before.
    constexpr unsigned now = 8;
    if (++calls_ % now == 0 && socket_ != CURL_SOCKET_BAD)
        checkReceived();
    if (connections_->hasEnded())
        throw TransferError(FailureKind::CLOSED, closedFirst);
    if (connections_->isOverdue())
        throw TransferError(FailureKind::TIMEOUT, "the response comes without a pause, but does not end");
}

// What comes is counted at the socket too, since libcurl shows nobody what stands between chunks, and overlooks parts
// of a header. That is more than the body by what frames and encrypts it.
void Transfer::checkReceived() {
    const CurlHTTPClientSettings& settings = rules_.settings();
    const double limit = 1.125 * static_cast<double>(settings.maxBodyBytes) +
                         static_cast<double>(settings.maxHeaderBytes) + forHandshakes;
    const std::uint64_t received = countReceived(socket_);
    // A connection that has ended meanwhile counts nothing any more.
    if (!receivedBefore_ || received < *receivedBefore_)
        receivedBefore_ = received;
    if (static_cast<double>(received - *receivedBefore_) > limit)
        body_.failTooLarge();
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
    if (result != CURLE_OK) {
        const std::string place = redirects_ == 0 ? destination_.name() : "where a redirect leads";
        const TransferError error = explain(result, easy_.get(), curlError_.data(), place, rules_.settings().token);
        return HTTPResponse::transportFailure(error.kind(), error.what());
    }
    const bool isConnectionCut = header_.endsWithConnection() && lacksCloseNotify_;
    if (!header_.hasEnded() || isConnectionCut || !body_.isComplete())
        return HTTPResponse::transportFailure(FailureKind::NETWORK, cutShort);
    return {header_.status(), body_.take()};
}

} // namespace OrvaneHost

#pragma once

#include "Base/QxBase10/IHTTPClient.h"
#include "HTTPClient/CurlHTTPClientOptions.h"
#include "HTTPClient/qxhttpclient10_export.h"

#include <memory>

namespace Qx {

/// Sends requests over HTTP/1.1, or over HTTP/2 if an https server chooses it.
///
///     Qx::CurlHTTPClientOptions options;
///     options.tokenSource = [](const std::string& refusedToken) { return signIn.token(refusedToken); };
///     Qx::Orvanedm orvanedm(std::make_shared<Qx::CurlHTTPClient>(options), "main");
///
/// Transfers run on one thread. Completions run on a few other threads, or where `executor` puts
/// them, so that reading a large response never holds up other transfers; if the request says so,
/// they run on the calling thread. Connections are reused, each for one request at a time, gzip is
/// accepted, certificates are always verified, and the limits in the options are enforced.
///
/// The token, and any Authorization, Proxy-Authorization or Cookie header set by the caller, are
/// sent only over https or to this machine; no redirect takes them, or any other header set by the
/// caller, to another scheme, host or port. No redirect is followed from https to http, or from
/// another machine to this one. A GET whose connection ends without a response may be sent again
/// over another connection, in addition to the retries; a POST is sent again only after a 401, with
/// a different token.
///
/// Each request completes exactly once, whatever happens: even if it is refused (control characters
/// in its URL, the token or a header; a URL that is neither http nor https or contains a user name;
/// a header that affects framing or names another host; a token that may not be sent to the URL),
/// if it is cancelled, if the client is destroyed in the meantime, if the client's threads run out
/// of memory, or if another completion throws. `std::bad_alloc` is thrown only if there is no
/// memory to accept the requests; then none of them is sent or completed. On the calling thread, an
/// exception from a completion propagates after all completions of the batch have run; on one of
/// the client's threads it is ignored.
///
/// Thread-safe: all operations may be called concurrently, and from completions. A completion may
/// destroy the client, even before the call that sent its request has returned, provided that no
/// other call to the client is in progress outside the client's own threads.
///
/// The client's threads block the signals sent to the process. In a forked child, the parent's
/// client can't be used: requests complete on the calling thread with a failure that says so, and
/// the destructor leaves the parent's threads and connections alone.
class QXHTTPCLIENT10_EXPORT CurlHTTPClient : public IHTTPClient {
public:
    /// Throws `std::invalid_argument`, with a one-line message, if an option is invalid;
    /// `std::system_error` if threads can't be started or the process has no file descriptors left;
    /// and `std::bad_alloc` when memory runs out.
    explicit CurlHTTPClient(const CurlHTTPClientOptions& options);
    CurlHTTPClient(const CurlHTTPClient&) = delete;
    CurlHTTPClient& operator=(const CurlHTTPClient&) = delete;

    /// Completes the requests in flight with a failure of kind `CLOSED`, and returns once the
    /// completions on the client's threads and the token source have returned. Requests that they
    /// send in the meantime fail too; a completion that always sends another request keeps the
    /// destructor from returning. When called from a completion on one of the client's threads, the
    /// destructor may run other completions, so hold no lock that they take. Destroy the client
    /// before `main` returns: after that, OpenSSL releases data that the client's thread may still
    /// use. On Windows the destructor must not run while a DLL is being unloaded, as that of a
    /// static object would: threads can't end then, and it would wait forever.
    ~CurlHTTPClient() override;

    void queueRequest(HTTPRequest& request) override;
    void whenAllRequests(std::vector<HTTPRequest>& requests, BatchCallback callback,
                         HTTPRequest::ExecutionType executionType) override;

    /// Completes all requests that are in flight, or that wait for a connection, a token or a
    /// retry, with a failure of kind `CANCELLED`, as soon as possible. A request that already has
    /// its response completes with that response. The client remains usable. To cancel only the
    /// requests of one dialog, give it a client of its own with a shared `connectionCache`.
    void cancelAll();

private:
    void send(std::vector<HTTPRequest> requests, BatchCallback callback, HTTPRequest::ExecutionType executionType);

    struct State;

    bool belongsToParentProcess() const;

    const long processId_;
    std::unique_ptr<State> state_;
};

} // namespace Qx

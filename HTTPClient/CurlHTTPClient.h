#pragma once

#include "Base/QxBase10/IHTTPClient.h"
#include "HTTPClient/CurlHTTPClientOptions.h"
#include "HTTPClient/qxhttpclient10_export.h"

#include <memory>

namespace Qx {

/// Sends requests over HTTP/1.1, or over HTTP/2 where a server of https chooses that.
///
///     Qx::CurlHTTPClientOptions options;
///     options.tokenSource = [](const std::string& refusedToken) { return signIn.token(refusedToken); };
///     Qx::Orvanedm orvanedm(std::make_shared<Qx::CurlHTTPClient>(options), "main");
///
/// Transfers run on one thread; completions run on a few others, or where `executor` puts them, so that reading a large
/// response never holds up other transfers; or in the calling thread if the request asks for that. Connections are
/// reused, each for one request at a time, gzip is accepted, certificates are always verified, and the limits of the
/// options hold.
///
/// The token, and the headers Authorization, Proxy-Authorization and Cookie that a caller sets, go only over https or
/// to this machine; no redirect takes them, or any other header of a caller, to another scheme, host or port. No
/// redirect is followed from https to http, or from elsewhere to this machine. A GET whose connection ends without a
/// response may be sent again over another one, besides the retries; a POST is sent again only after a 401, with
/// another token.
///
/// Each request completes once, whatever happens: also if it is refused (control characters in its URL, the token or a
/// header; a URL that is neither http nor https or contains a user name; a header that frames the request or names
/// another host; a token that may not go there), if it is cancelled, if the client is destroyed meanwhile, if its
/// threads run out of memory, or if another completion throws. Only if there is no memory to accept requests is
/// `std::bad_alloc` thrown; then none of them is sent or completed. In the calling thread, what a completion throws
/// passes through after all completions of the batch; on a thread of the client it ends there.
///
/// All operations may be called from several threads at once and from completions. A completion may destroy the client,
/// also before the call that sent its request has returned, if no other call to it is running on a thread that is not
/// its own.
///
/// The client's threads take none of the process's signals. In a forked child the parent's client is of no use: there
/// requests complete with a failure that says so, in the calling thread, and destroying it leaves all to the parent.
class QXHTTPCLIENT10_EXPORT CurlHTTPClient : public IHTTPClient {
public:
    /// Throws `std::invalid_argument` with one line for an option that makes no sense, `std::system_error` if threads
    /// can't be started or there are no descriptors, and `std::bad_alloc`.
    explicit CurlHTTPClient(const CurlHTTPClientOptions& options);
    CurlHTTPClient(const CurlHTTPClient&) = delete;
    CurlHTTPClient& operator=(const CurlHTTPClient&) = delete;

    /// Completes the requests in flight with a failure of kind `CLOSED` and returns when the completions on its threads
    /// have returned, and the token source. What they send meanwhile fails too; a completion that always sends another
    /// request keeps the destructor from returning. If it is called in a completion on a thread of the client, it may
    /// run other completions, so hold no lock that they take. Call it before `main` returns: OpenSSL then releases what
    /// the client's thread may still use. On Windows it must not run while a DLL is unloaded, as that of a static
    /// object does: threads can't end then, and it would wait for ever.
    ~CurlHTTPClient() override;

    void queueRequest(HTTPRequest& request) override;
    void whenAllRequests(std::vector<HTTPRequest>& requests, BatchCallback callback,
                         HTTPRequest::ExecutionType executionType) override;

    /// Completes what is in flight, or waits for a connection, a token or a retry, with a failure of kind `CANCELLED`,
    /// as soon as possible. A request that has its response already completes with that. The client remains usable. To
    /// cancel the requests of one dialogue, give it a client of its own, with a shared `connectionCache`.
    void cancelAll();

private:
    void send(std::vector<HTTPRequest> requests, BatchCallback callback, HTTPRequest::ExecutionType executionType);

    struct State;

    bool belongsToParentProcess() const;

    const long processId_;
    std::unique_ptr<State> state_;
};

} // namespace Qx

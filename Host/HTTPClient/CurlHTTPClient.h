#pragma once

#include "Base/QxBase10/IHTTPClient.h"
#include "Host/HTTPClient/CurlHTTPClientSettings.h"

#include <memory>

namespace OrvaneHost {

/// Sends requests over HTTP/1.1, with TLS or without.
///
/// Transfers run on one thread of the client; completions run on a few others, so that reading a large answer
/// never holds up other transfers, or in the calling thread where the request asks for that. Connections are
/// reused, compressed answers are accepted, certificates are always verified, and the limits of the settings
/// hold. The token, and the headers Authorization, Proxy-Authorization and Cookie that a caller sets, go only over
/// https or to this machine; no redirect takes them, or any other header of a caller, to another scheme, host or port.
/// No redirect is followed from https to http, or from elsewhere to this machine. A GET whose connection ends without a
/// response may be sent again over another; a POST never is.
///
/// Each request gets one completion whatever happens: also if it is refused (control characters in its address,
/// the token or a header, an address that is neither http nor https or holds a user name, a header that frames the
/// request or names another host, the token where it may not go), if the client is destroyed meanwhile, if its own
/// threads find no memory, or if another completion throws. Only where there is no memory to take requests does
/// `std::bad_alloc` come out of the call; then none of them is sent or answered. In the calling thread what a
/// completion throws passes through, after the completions of the same batch; on a thread of the client it ends there.
/// All operations may be called from several threads at once and from completions. A completion may destroy the client,
/// also before the call that sent its request has returned, if no other call to it is running on a thread that is not
/// its own.
///
/// The client's threads take none of the process's signals. A forked child has no use for its parent's client: there
/// requests are answered with a failure that says so, in the calling thread, and destroying it leaves all to the
/// parent.
class CurlHTTPClient : public Qx::IHTTPClient {
public:
    /// Throws `std::invalid_argument` with one line for a setting that makes no sense, and `std::system_error` if
    /// threads can't be started or there are no descriptors.
    explicit CurlHTTPClient(const CurlHTTPClientSettings& settings);
    CurlHTTPClient(const CurlHTTPClient&) = delete;
    CurlHTTPClient& operator=(const CurlHTTPClient&) = delete;

    /// Answers the requests in flight with a transport failure and returns when the completions on its threads have.
    /// What they queue meanwhile is answered so too; one that always queues another keeps the destructor from
    /// returning. Called in a completion on a thread of the client, it may run other completions, so hold no lock that
    /// they take. Call it before `main` returns: OpenSSL then releases what the client's thread may still use.
    ~CurlHTTPClient() override;

    void queueRequest(Qx::HTTPRequest& request) override;
    void whenAllRequests(std::vector<Qx::HTTPRequest>& requests, BatchCallback callback,
                         Qx::HTTPRequest::ExecutionType executionType) override;

private:
    void send(std::vector<Qx::HTTPRequest> requests, BatchCallback callback,
              Qx::HTTPRequest::ExecutionType executionType);

    struct Threads;

    bool belongsToParentProcess() const;

    const long processId_;
    std::unique_ptr<Threads> threads_;
};

} // namespace OrvaneHost

#pragma once

#include "HTTPClient/CurlConnectionCache.h"
#include "HTTPClient/HTTPAttempt.h"
#include "HTTPClient/HTTPProgress.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Qx {

/// The options of a `CurlHTTPClient`. Each duration must be more than 0 and at most a day.
struct CurlHTTPClientOptions {
    /// The bearer token for requests with `AuthType::BEARER`. If empty, they are sent without a
    /// token. Ignored if there is a `tokenSource`.
    std::string token;

    /// Returns the bearer token. Called with an empty string when a request that needs a token
    /// starts, and again, with the refused token, if the service answers 401. If it then returns a
    /// different token, the request is sent once more; otherwise the 401 is the response. Requests
    /// that wait at the same time share one call. It runs on a dedicated thread of the client, one
    /// call at a time, so it may block, and may send requests of execution type `CALLING_THREAD`
    /// that need no token. Clients with the same source call it concurrently, so a shared source
    /// must be thread-safe. If it throws, the requests that wait for it fail with the exception's
    /// message as the reason, so the message must not contain a secret.
    ///
    /// Cancelling does not wait for it, but the client's destructor does, so it must neither
    /// destroy the client nor wait for a thread that is destroying it.
    std::function<std::string(const std::string& refusedToken)> tokenSource;

    /// The token is sent only to the schemes, hosts and ports of these URLs; a request that would
    /// send it elsewhere is refused. If there are none, the token is sent to any host that a
    /// request names, which is too permissive if links come from documents.
    std::vector<std::string> tokenOrigins;

    /// Time limit for connecting, including the TLS handshake.
    std::chrono::milliseconds connectTimeout = std::chrono::seconds(10);

    /// Time limit for one attempt, including name resolution and redirects, up to the last byte.
    std::chrono::milliseconds requestTimeout = std::chrono::seconds(120);

    /// An attempt fails if it averages less than one byte per second for this long.
    std::chrono::seconds stallTimeout = std::chrono::seconds(30);

    /// Maximum size of all headers of a response, including those of redirects.
    std::size_t maxHeaderBytes = std::size_t{256} << 10;

    /// Maximum size of the decoded body, and of all body bytes received, including those of
    /// redirects.
    std::size_t maxBodyBytes = std::size_t{256} << 20;

    /// Maximum number of redirects that a request follows; a further one is a failure.
    int maxRedirects = 5;

    /// How many times a GET is retried after a status of 429, 502, 503 or 504, or after a network
    /// failure before the first line of a response. Each attempt has the full `requestTimeout`. A
    /// POST is never sent again for these reasons.
    int maxRetries = 2;

    /// The delay before the first retry, give or take a fifth; it doubles with each further retry.
    std::chrono::milliseconds retryDelay = std::chrono::milliseconds(500);

    /// The longest delay that a response's Retry-After may request. If it asks for more, the
    /// response is delivered without a retry.
    std::chrono::seconds maxRetryAfter = std::chrono::seconds(30);

    /// The URL of the proxy, which may contain a user name and password. If not set, the
    /// environment determines the proxy (`https_proxy`, `http_proxy`, `no_proxy`); if empty, none
    /// is used. Requests to this machine never use a proxy.
    std::optional<std::string> proxy;

    /// The User-Agent header of requests that set none. If empty, none is sent.
    std::string userAgent;

    /// A PEM file of certificates to trust instead of the system's. If empty, the system's are
    /// trusted.
    std::string certificateFile;

    /// Connections to share with other clients. If null, the client has its own, limited to
    /// `maxConnections`.
    std::shared_ptr<CurlConnectionCache> connectionCache;

    /// Maximum number of open connections, at least one; further requests wait for their turn.
    /// Ignored if there is a `connectionCache`.
    std::size_t maxConnections = 16;

    /// The number of threads that run completions; at least one and at most 1,000.
    std::size_t callbackThreads = 2;

    /// If set, called on a callback thread for each completion that would run there. It must run
    /// the given function once, immediately or later, where completions belong, such as in a UI
    /// event queue. If it throws, the completion runs on the callback thread. If it destroys the
    /// function without calling it, the request's callback is not called, and the request counts as
    /// completed in its batch.
    ///
    /// The library's completions read the whole answer before they call back, which takes about 3
    /// microseconds per file. To keep that work off the UI thread, set no executor, and post the
    /// finished document from your callback.
    std::function<void(std::function<void()> completion)> executor;

    /// Called for each request, even a refused one, directly before its callback and on the same
    /// thread, so that a callback that only learns of success or failure can find out why.
    /// Exceptions from it are ignored.
    std::function<void(const HTTPRequest& request, const HTTPResponse& response)> onResponse;

    /// Called at most ten times a second for each request while the body of a successful response
    /// arrives. Runs on the thread that all transfers share, so it must be quick, and must neither
    /// call nor destroy a client. Exceptions from it are ignored.
    std::function<void(const HTTPProgress& progress)> onProgress;

    /// Called after each attempt, before the request's completion. The rules of `onProgress` apply.
    std::function<void(const HTTPAttempt& attempt)> onAttempt;
};

} // namespace Qx

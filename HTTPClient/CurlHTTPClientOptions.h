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

/// The options of a `CurlHTTPClient`. Each time is more than 0 and at most a day.
struct CurlHTTPClientOptions {
    /// The bearer token of requests that ask for one. If it is empty, they are sent without. Not used if there is a
    /// token source.
    std::string token;

    /// Returns the bearer token. It is called when a request that asks for one starts, with an empty text, and again if
    /// the service answers 401, with the token that it refused. If it then returns another one, the request is sent
    /// once more; otherwise the 401 is the response. Requests that wait at the same time share a call. It runs on a
    /// thread of the client's own, one call at a time, so it may take its time, and may send requests of the execution
    /// type `CALLING_THREAD` that need no token. Clients that have the same source call it at the same time, so one
    /// that several share must be ready for that. If it throws, its requests fail with the exception's text as the
    /// reason, so that must not hold a secret.
    ///
    /// Cancelling does not wait for it, but the client's destructor does: so it must neither destroy the client nor
    /// wait for the thread that does.
    std::function<std::string(const std::string& refusedToken)> tokenSource;

    /// URLs whose scheme, host and port are the only ones that get the token: a request that would take it elsewhere is
    /// refused. If there is none, the token goes wherever a request asks for it, which is too far if links come from
    /// documents.
    std::vector<std::string> tokenOrigins;

    /// Until there is a connection, the TLS handshake included.
    std::chrono::milliseconds connectTimeout = std::chrono::seconds(10);

    /// From the start of an attempt, name resolution and redirects included, to the last byte.
    std::chrono::milliseconds requestTimeout = std::chrono::seconds(120);

    /// How long less than one byte a second may come on average.
    std::chrono::seconds stallTimeout = std::chrono::seconds(30);

    /// The size of all headers of a response, those of redirects included.
    std::size_t maxHeaderBytes = std::size_t{256} << 10;

    /// The size of the decoded body; and of all bytes that are received of bodies, those of redirects included.
    std::size_t maxBodyBytes = std::size_t{256} << 20;

    /// How many redirects of a request are followed; more are a failure, and 0 follows none.
    int maxRedirects = 5;

    /// How often a GET is tried again after a response of 429, 502, 503 or 504, or after a network failure before the
    /// first line of a response. Each attempt has the whole `requestTimeout`. A POST is never sent twice for such a
    /// reason.
    int maxRetries = 2;

    /// How long the first retry waits, give or take a fifth; each further one waits twice as long as the one before.
    std::chrono::milliseconds retryDelay = std::chrono::milliseconds(500);

    /// How long a response's Retry-After may make a retry wait. If it asks for more, the response is handed on.
    std::chrono::seconds maxRetryAfter = std::chrono::seconds(30);

    /// The proxy: what the environment says (`https_proxy`, `http_proxy`, `no_proxy`), or the one of this URL, which
    /// may hold a user name and password, or none if the text is empty. Requests to this machine use none.
    std::optional<std::string> proxy;

    /// The header User-Agent of requests that set none. If it is empty, it is not sent.
    std::string userAgent;

    /// A file of certificates (PEM) to trust instead of the system's; the system's if the text is empty.
    std::string certificateFile;

    /// Connections to share with other clients. If it is null, the client has its own, at most `maxConnections`.
    std::shared_ptr<CurlConnectionCache> connectionCache;

    /// At least one; requests beyond these wait for their turn. Not used if there is a `connectionCache`.
    std::size_t maxConnections = 16;

    /// Threads that run completions; at least one and at most 1,000.
    std::size_t callbackThreads = 2;

    /// If set, called on a callback thread for each completion that would run there; runs the function that it gets
    /// where completions belong, in a queue of the user interface, say, then or later, once. If it throws, the
    /// completion runs on the callback thread. If it destroys the function without a call, the request's callback is
    /// not called, and the request counts as completed in its batch.
    ///
    /// A completion of the library reads the whole answer before it calls back, some 3 microseconds for each file. To
    /// keep that from the user interface, set no executor, and post the finished document from your callback.
    std::function<void(std::function<void()> completion)> executor;

    /// Called for each request, a refused one too, directly before its callback and in the same thread: so a callback
    /// that is told of no more than success or failure knows why. What it throws is dropped.
    std::function<void(const HTTPRequest& request, const HTTPResponse& response)> onResponse;

    /// Called at most ten times a second for each request while the body of a successful response arrives.
    std::function<void(const HTTPProgress& progress)> onProgress;

    /// Called after each attempt, before the request's completion.
    std::function<void(const HTTPAttempt& attempt)> onAttempt;

    // The last two are called on a thread that all requests share, so they have to be quick, and must neither call nor
    // destroy a client. What they throw is dropped.
};

} // namespace Qx

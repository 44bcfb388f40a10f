#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace OrvaneHost {

/// What a `CurlHTTPClient` is to keep to. Times are more than 0 and no more than a day, and none runs while a request
/// waits for its turn.
struct CurlHTTPClientSettings {
    /// Sent as bearer token with requests that ask for one; empty sends none.
    std::string token;

    /// URLs whose scheme, host and port are the only ones that get the token: requests that would take it elsewhere are
    /// refused. Without any it goes wherever a request asks for it, which is too far where links come from documents.
    std::vector<std::string> tokenOrigins;

    /// Until there is a connection, the TLS handshake included.
    std::chrono::milliseconds connectTimeout = std::chrono::seconds(10);
    /// From the start of the request, name look-up and redirects included, to the last byte.
    std::chrono::milliseconds requestTimeout = std::chrono::seconds(120);
    /// How long less than one byte a second may come on average.
    std::chrono::seconds stallTimeout = std::chrono::seconds(30);

    /// Of all headers on the way to an answer, those of redirects included.
    std::size_t maxHeaderBytes = std::size_t{256} << 10;
    /// Of the decoded body; and of all that is received of bodies on the way, as it comes, redirects included.
    std::size_t maxBodyBytes = std::size_t{256} << 20;
    /// More are a failure; 0 or less follows none.
    int maxRedirects = 5;

    /// At least one; requests beyond these wait for their turn.
    std::size_t maxConnections = 16;
    /// Threads that call completions, at least one, and no more than 1,000.
    std::size_t deliveryThreads = 2;

    /// A file of certificates (PEM) to trust in place of the system's; empty for the system's.
    std::string certificateFile;
};

} // namespace OrvaneHost

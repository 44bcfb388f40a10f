#pragma once

#include <curl/curl.h>

// What only OpenSSL tells of the connection that a handle uses; false where libcurl leaves TLS to another library, and
// for a connection without TLS.
namespace Qx::Detail {

/// Whether libcurl leaves TLS to OpenSSL.
bool runsOnOpenSSL();

/// Whether the peer has not said that the connection ends, as it does with "close_notify".
bool lacksCloseNotify(CURL* easy);

/// Whether the handshake has chosen HTTP/2. A response must not decide that: one of HTTP/1.1 could claim it.
bool speaksHTTP2(CURL* easy);

/// Whether something is left within TLS that nobody has read. To look for more would take session tickets from libcurl.
bool hasDataInTLS(CURL* easy);

/// Whoever is to be told of the messages of TLS itself.
class HandshakeWatcher {
public:
    virtual ~HandshakeWatcher() = default;

    /// Called for each that comes, with OpenSSL's context of its connection.
    virtual void onHandshakeMessage(const void* context) = 0;
};

/// Lets `watcher`, which has to outlive it, watch the connections of that context of OpenSSL's.
void watchHandshake(void* context, HandshakeWatcher& watcher);

} // namespace Qx::Detail

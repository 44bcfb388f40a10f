#pragma once

#include <curl/curl.h>

// What only OpenSSL reports about the connection that a handle uses. The queries return false if
// libcurl uses another TLS library, or the connection does not use TLS.
namespace Qx::Detail {

/// Returns whether libcurl uses OpenSSL for TLS.
bool runsOnOpenSSL();

/// Returns whether the peer has not announced the end of the connection with "close_notify".
bool lacksCloseNotify(CURL* easy);

/// Returns whether the handshake chose HTTP/2. The response must not decide that: one of HTTP/1.1
/// could claim to be HTTP/2.
bool speaksHTTP2(CURL* easy);

/// Returns whether OpenSSL holds data that has not been read. Does not read more from the socket,
/// since that could take session tickets away from libcurl.
bool hasDataInTLS(CURL* easy);

/// Is notified of handshake messages, which TLS also sends after the handshake.
class HandshakeWatcher {
public:
    virtual ~HandshakeWatcher() = default;

    /// Called for each message received, with the OpenSSL context of its connection.
    virtual void onHandshakeMessage(const void* context) = 0;
};

/// Makes `watcher`, which must outlive the context, watch the connections of that OpenSSL context.
void watchHandshake(void* context, HandshakeWatcher& watcher);

} // namespace Qx::Detail

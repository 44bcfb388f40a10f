#include "HTTPClient/Detail/CurlTLS.h"

#include <openssl/ssl.h>
#include <string_view>

namespace Qx::Detail {

namespace {

// The connection's TLS object; null if it has none, or libcurl does not use OpenSSL.
SSL* tlsOf(CURL* easy) {
    curl_tlssessioninfo* session = nullptr;
    if (curl_easy_getinfo(easy, CURLINFO_TLS_SSL_PTR, &session) != CURLE_OK || !session ||
        session->backend != CURLSSLBACKEND_OPENSSL)
        return nullptr;
    return static_cast<SSL*>(session->internals);
}

} // namespace

bool runsOnOpenSSL() {
    static const char* const name = curl_version_info(CURLVERSION_NOW)->ssl_version;
    return name && std::string_view(name).starts_with("OpenSSL/");
}

bool lacksCloseNotify(CURL* easy) {
    SSL* const ssl = tlsOf(easy);
    return ssl && (SSL_get_shutdown(ssl) & SSL_RECEIVED_SHUTDOWN) == 0;
}

bool speaksHTTP2(CURL* easy) {
    const unsigned char* name = nullptr;
    unsigned length = 0;
    if (SSL* const ssl = tlsOf(easy))
        SSL_get0_alpn_selected(ssl, &name, &length);
    return std::string_view(reinterpret_cast<const char*>(name), length) == "h2";
}

bool hasDataInTLS(CURL* easy) {
    SSL* const ssl = tlsOf(easy);
    return ssl && SSL_has_pending(ssl) == 1;
}

void watchHandshake(void* context, HandshakeWatcher& watcher) {
    auto* tls = static_cast<SSL_CTX*>(context);
    SSL_CTX_set_msg_callback_arg(tls, &watcher);
    SSL_CTX_set_msg_callback(tls, [](int isWrite, int, int type, const void*, std::size_t, SSL* ssl, void* watching) {
        if (isWrite == 0 && type == SSL3_RT_HANDSHAKE)
            static_cast<HandshakeWatcher*>(watching)->onHandshakeMessage(SSL_get_SSL_CTX(ssl));
    });
}

} // namespace Qx::Detail

#include "HTTPClient/Detail/CurlFailure.h"

#include "Base/QxBaseCore10/Strings.h"
#include "HTTPClient/Detail/HTTPText.h"

#include <algorithm>

namespace Qx::Detail {

namespace {

bool hasConnected(CURL* easy) {
    curl_off_t time = 0;
    curl_easy_getinfo(easy, CURLINFO_PRETRANSFER_TIME_T, &time);
    return time > 0;
}

// "OpenSSL/3.0: error:0A00010B:SSL routines::wrong version number" -> "TLS: wrong version number"
std::string withoutCodes(const std::string& detail) {
    const std::size_t code = detail.find("error:");
    const std::size_t words = detail.rfind(':');
    return code == std::string::npos ? detail : "TLS: " + detail.substr(words + 1);
}

// Uses our own words where libcurl's may quote a proxy's URL or parts of it, including its
// password.
TransferError explainPlainly(CURLcode result, CURL* easy, const std::string& detail) {
    const std::string reason = detail.empty() ? curl_easy_strerror(result) : withoutCodes(detail);
    switch (result) {
    case CURLE_COULDNT_RESOLVE_HOST:
        return {FailureKind::NETWORK, "can't resolve the host name"};
    case CURLE_COULDNT_RESOLVE_PROXY:
        return {FailureKind::NETWORK, "can't resolve the host name of the proxy"};
    case CURLE_COULDNT_CONNECT:
        return {FailureKind::NETWORK, detail.empty() ? "can't connect" : "can't connect: " + detail};
    case CURLE_OPERATION_TIMEDOUT:
        if (!hasConnected(easy))
            return {FailureKind::NETWORK, "can't connect in time"};
        return {FailureKind::TIMEOUT, reason};
    case CURLE_NOT_BUILT_IN:
    case CURLE_URL_MALFORMAT:
        return {FailureKind::NETWORK, curl_easy_strerror(result)};
    case CURLE_OUT_OF_MEMORY:
        return {FailureKind::OUT_OF_MEMORY, reason};
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CONNECT_ERROR:
        return {FailureKind::TLS, reason};
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_WEIRD_SERVER_REPLY:
        return {FailureKind::MALFORMED_RESPONSE, reason};
    default:
        return {FailureKind::NETWORK, reason};
    }
}

} // namespace

TransferError explain(CURLcode result, CURL* easy, const std::string& detail,
                      std::initializer_list<std::string_view> secrets) {
    const TransferError error = explainPlainly(result, easy, detail);
    // The server can influence some of the text, and knows the token.
    std::string reason = holdsSecret(error.what(), secrets) ? curl_easy_strerror(result) : error.what();
    std::replace_if(reason.begin(), reason.end(), isControl, ' ');
    return {error.kind(), ToHString(ToIString(reason))}; // The system's messages need not be UTF-8.
}

bool holdsSecret(const std::string& text, std::initializer_list<std::string_view> secrets) {
    constexpr std::size_t minSecretLength = 8;
    return std::any_of(secrets.begin(), secrets.end(), [&](std::string_view secret) {
        return secret.size() >= minSecretLength && text.find(secret) != std::string::npos;
    });
}

} // namespace Qx::Detail

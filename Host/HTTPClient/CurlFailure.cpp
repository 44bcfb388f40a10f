#include "Host/HTTPClient/CurlFailure.h"

#include "Host/HTTPClient/HTTPText.h"

#include <algorithm>

namespace OrvaneHost {

namespace {

bool hasConnected(CURL* easy) {
    curl_off_t time = 0;
    curl_easy_getinfo(easy, CURLINFO_PRETRANSFER_TIME_T, &time);
    return time > 0;
}

// Words of our own where libcurl's may quote the address of a proxy, whole or in parts, with the password in it.
TransferError explainPlainly(CURLcode result, CURL* easy, const std::string& detail, const std::string& place) {
    const std::string reason = detail.empty() ? curl_easy_strerror(result) : detail;
    switch (result) {
    case CURLE_COULDNT_RESOLVE_HOST:
        return {FailureKind::NETWORK, "can't find " + place};
    case CURLE_COULDNT_RESOLVE_PROXY:
        return {FailureKind::NETWORK, "can't find the proxy"};
    case CURLE_COULDNT_CONNECT:
        return {FailureKind::NETWORK, "can't connect to " + place};
    case CURLE_OPERATION_TIMEDOUT:
        if (!hasConnected(easy))
            return {FailureKind::NETWORK, "can't connect to " + place + " in time"};
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
        return {FailureKind::MALFORMED, reason};
    default:
        return {FailureKind::NETWORK, reason};
    }
}

} // namespace

TransferError explain(CURLcode result, CURL* easy, const std::string& detail, const std::string& place,
                      const std::string& token) {
    const TransferError error = explainPlainly(result, easy, detail, place);
    // The server has a say in some of the words, and knows the token. A shorter one is no secret, but a part of words.
    constexpr std::size_t secretFrom = 8;
    std::string reason = error.what();
    if (token.size() >= secretFrom && reason.find(token) != std::string::npos)
        reason = curl_easy_strerror(result);
    std::replace_if(reason.begin(), reason.end(), isControl, ' ');
    return {error.kind(), reason};
}

} // namespace OrvaneHost

#include "HTTPClient/Detail/CurlTLS.h"

namespace Qx::Detail {

bool runsOnOpenSSL() {
    return false;
}

bool lacksCloseNotify(CURL*) {
    return false;
}

bool speaksHTTP2(CURL*) {
    return false;
}

bool hasDataInTLS(CURL*) {
    return false;
}

void watchHandshake(void*, HandshakeWatcher&) {}

} // namespace Qx::Detail

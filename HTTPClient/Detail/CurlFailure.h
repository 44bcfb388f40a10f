#pragma once

#include "HTTPClient/Detail/TransferError.h"

#include <curl/curl.h>
#include <initializer_list>
#include <string>
#include <string_view>

namespace Qx::Detail {

/// Explains why a transfer failed: `result`, which is not `CURLE_OK`, is libcurl's result for
/// `easy`, and `detail` is what libcurl wrote into its error buffer or, if it could not connect,
/// why it got no socket. The reason contains none of the `secrets`, and no part of a proxy's URL.
/// Throws `std::bad_alloc` when memory runs out.
TransferError explain(CURLcode result, CURL* easy, const std::string& detail,
                      std::initializer_list<std::string_view> secrets);

/// Returns whether the text contains one of the secrets. Short secrets are ignored, since ordinary
/// words may contain them.
bool holdsSecret(const std::string& text, std::initializer_list<std::string_view> secrets);

} // namespace Qx::Detail

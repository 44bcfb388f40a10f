#pragma once

#include "HTTPClient/Detail/TransferError.h"

#include <curl/curl.h>
#include <initializer_list>
#include <string>
#include <string_view>

namespace Qx::Detail {

/// What it means that libcurl ended the work of `easy` with `result`, which is not `CURLE_OK`. `detail` is what it
/// wrote into its error buffer, or, if it can't connect, why it got no socket. The reason holds none of the `secrets`,
/// nor anything of a proxy's URL. Throws `std::bad_alloc`.
TransferError explain(CURLcode result, CURL* easy, const std::string& detail,
                      std::initializer_list<std::string_view> secrets);

/// Whether the text holds one of the secrets. A short one counts for none, but for a part of words.
bool holdsSecret(const std::string& text, std::initializer_list<std::string_view> secrets);

} // namespace Qx::Detail

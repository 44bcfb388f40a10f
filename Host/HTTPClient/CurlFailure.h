#pragma once

#include "Host/HTTPClient/TransferError.h"

#include <curl/curl.h>
#include <string>

namespace OrvaneHost {

/// What it means that libcurl ended the work of `easy` with `result`, which is not `CURLE_OK`. `detail` is what it
/// wrote into its error buffer, and `place` where the request went, for a person. The reason does not hold `token`, nor
/// anything of a proxy's address. Throws `std::bad_alloc`.
TransferError explain(CURLcode result, CURL* easy, const std::string& detail, const std::string& place,
                      const std::string& token);

} // namespace OrvaneHost

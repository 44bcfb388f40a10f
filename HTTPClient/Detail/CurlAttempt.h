#pragma once

#include "HTTPClient/HTTPAttempt.h"

#include <curl/curl.h>

namespace Qx::Detail {

/// Returns what libcurl measured of the last exchange of `easy`: bytes, times, and whether its
/// connection was reused.
HTTPAttempt measureExchange(CURL* easy);

} // namespace Qx::Detail

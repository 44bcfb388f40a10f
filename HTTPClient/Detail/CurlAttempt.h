#pragma once

#include "HTTPClient/HTTPAttempt.h"

#include <curl/curl.h>

namespace Qx::Detail {

/// What libcurl has measured of the last exchange of `easy`: bytes, times and whether its connection was open already.
HTTPAttempt measureExchange(CURL* easy);

} // namespace Qx::Detail

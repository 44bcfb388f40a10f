#pragma once

#include "HTTPClient/HTTPAttempt.h"

#include <string>

namespace OrvaneHost {

/// Describes the attempt to the user, in one line.
std::string describe(const Qx::HTTPAttempt& attempt);

} // namespace OrvaneHost

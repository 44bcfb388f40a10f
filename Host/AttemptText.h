#pragma once

#include "HTTPClient/HTTPAttempt.h"

#include <string>

namespace OrvaneHost {

/// The attempt in one line for the user.
std::string describe(const Qx::HTTPAttempt& attempt);

} // namespace OrvaneHost

#pragma once

#include "Base/QxBase10/HTTPResponse.h"
#include "Host/CommandLine.h"

#include <string>

namespace OrvaneHost {

/// What it means for the user that the request for `urn`, a URN or a link, failed, and what to do about it, in one
/// line.
std::string explainFailure(const Qx::HTTPResponse& response, const std::string& urn, const CommandLine& commandLine);

/// The same for an answer of success that is JSON, but does not hold what it should, an "assembly", say, of that URN.
std::string explainStrangeAnswer(const Qx::HTTPResponse& response, const std::string& urn, const char* what);

} // namespace OrvaneHost

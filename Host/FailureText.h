#pragma once

#include "Base/QxBase10/HTTPResponse.h"
#include "Host/CommandLine.h"

#include <string>

namespace OrvaneHost {

/// Explains to the user, in one line, why the request for `urn`, a URN or a link, failed, and what
/// to do about it.
std::string explainFailure(const Qx::HTTPResponse& response, const std::string& urn, const CommandLine& commandLine);

/// The same for a successful answer that is JSON, but not `what` was requested: the "assembly" of
/// that URN, for example.
std::string explainUnexpectedAnswer(const Qx::HTTPResponse& response, const std::string& urn, const char* what);

} // namespace OrvaneHost

#include "Host/FailureText.h"

#include "Host/Printable.h"
#include "Server/Orvane/FolderContentLink.h"

#include <fmt/format.h>

namespace OrvaneHost {

namespace {

using FailureKind = Qx::HTTPResponse::FailureKind;

std::string explainTransportFailure(const Qx::HTTPResponse& response, const std::string& urn,
                                    const CommandLine& commandLine) {
    const std::string& reason = response.getReason();
    switch (response.getFailureKind()) {
    case FailureKind::REFUSED:
        // Not shown: what is wrong with it may be a password.
        if (Orvane::FolderContentLink::isOrvaneFolderContentLink(urn))
            return fmt::format(
                "the request for a link was refused: {}; check it, or, to send your token to its host on "
                "purpose, name that host with --service",
                reason);
        return fmt::format("the request for {} was refused: {}; check --service", urn, reason);
    case FailureKind::TLS:
        return fmt::format("no secure connection for {}: {}; check --service, the time of this machine, and which "
                           "certificates it trusts",
                           urn, reason);
    case FailureKind::TIMEOUT:
        return fmt::format("no answer for {} in time: {}; try again later, or wait longer with --timeout (now {} s)",
                           urn, reason, commandLine.timeout.count());
    case FailureKind::TOO_LARGE:
        return fmt::format("the answer for {} is too large: {}; allow more with --max-size (now {} MiB)", urn, reason,
                           commandLine.maxSizeInMiB);
    case FailureKind::MALFORMED_RESPONSE:
        return fmt::format("no proper answer for {}: {}; check --service, and any proxy between", urn, reason);
    case FailureKind::OUT_OF_MEMORY:
        return fmt::format("no memory for the answer for {}; close other programs, or give this one more", urn);
    case FailureKind::NONE:
    case FailureKind::NETWORK:
    case FailureKind::CANCELLED:
    case FailureKind::CLOSED:
        break;
    }
    return fmt::format("no answer for {}: {}; check --service, that the service runs, your network and its proxy", urn,
                       reason);
}

} // namespace

std::string explainFailure(const Qx::HTTPResponse& response, const std::string& urnOrLink,
                           const CommandLine& commandLine) {
    const std::string urn = withoutCredentials(urnOrLink);
    const int status = response.getStatus();
    if (response.isSuccessful())
        return fmt::format("the answer for {} is not JSON; check --service", urn);
    switch (status) {
    case 0:
        return explainTransportFailure(response, urn, commandLine);
    case 401:
        return "the service does not accept the token (401); set ORVANE_TOKEN or --token-file to a valid one";
    case 403:
        return fmt::format("you may not see {} (403); ask its owner for access", urn);
    case 404:
        return fmt::format("the service does not know {} (404); check the URN", urn);
    default:
        return fmt::format("the service {} (status {}); {}",
                           status < 500 ? "takes no such request for " + urn : "failed on " + urn, status,
                           status < 500 ? "check --service and the URN" : "try again later");
    }
}

} // namespace OrvaneHost

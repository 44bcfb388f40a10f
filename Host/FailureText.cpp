#include "Host/FailureText.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Status.h"
#include "Host/Printable.h"
#include "Server/Orvane/FolderContentLink.h"

#include <cstdlib>
#include <fmt/format.h>
#include <new>
#include <optional>

namespace OrvaneHost {

namespace {

using FailureKind = Qx::HTTPResponse::FailureKind;

std::string shownURN(const std::string& urnOrLink) {
    return shortened(withoutCredentials(urnOrLink), 120);
}

// Returns nothing to check for the service inside the program, whose URL the user did not choose.
std::string checkService(const CommandLine& commandLine) {
    return commandLine.service.empty() ? "" : "--service, ";
}

std::string checkNetwork(const CommandLine& commandLine) {
    std::string advice = "check " + checkService(commandLine) + "whether the service is running, and your network";
    for (const char* variable : {"https_proxy", "http_proxy", "all_proxy", "HTTPS_PROXY", "ALL_PROXY"})
        if (const char* proxy = std::getenv(variable); proxy && *proxy != '\0')
            return advice + " (including the proxy set in " + variable + ")";
    return advice;
}

std::string explainTransportFailure(const Qx::HTTPResponse& response, const std::string& urn, bool isLink,
                                    const CommandLine& commandLine) {
    const std::string& reason = response.getReason();
    switch (response.getFailureKind()) {
    case FailureKind::REFUSED:
        // The link is not shown: the part that is wrong may be a password.
        if (isLink)
            return fmt::format("the request for a link was refused: {}; check the link, or, if you mean to send your "
                               "token to its host, name that host with --service",
                               reason);
        return fmt::format("the request for {} was refused: {}; check {}the URN and the options", urn, reason,
                           checkService(commandLine));
    case FailureKind::TLS:
        return fmt::format("no secure connection for {}: {}; {}, as well as this machine's clock and the certificates "
                           "it trusts",
                           urn, reason, checkNetwork(commandLine));
    case FailureKind::TIMEOUT:
        return fmt::format("no answer for {} in time: {}; try again later, or wait longer with --timeout (now {} s)",
                           urn, reason, commandLine.timeout.count());
    case FailureKind::TOO_LARGE:
        return fmt::format("the answer for {} is too large: {}; allow more with --max-size (now {} MiB)", urn, reason,
                           commandLine.maxSizeInMiB);
    case FailureKind::MALFORMED_RESPONSE:
        return fmt::format("invalid answer for {}: {}; check {}the network and any proxy in between", urn, reason,
                           checkService(commandLine));
    case FailureKind::OUT_OF_MEMORY:
        return fmt::format(
            "not enough memory for the answer for {}; close other programs, or allow this program more memory", urn);
    case FailureKind::NONE:
    case FailureKind::NETWORK:
    case FailureKind::CANCELLED:
    case FailureKind::CLOSED:
        break;
    }
    return fmt::format("no answer for {}: {}; {}", urn, reason, checkNetwork(commandLine));
}

// Returns the body as JSON; nothing if it is not JSON, or memory runs out.
std::optional<Qx::JSONNode> jsonOf(const Qx::HTTPResponse& response) {
    Qx::Status status;
    return Qx::JSONNode::parse(response.getBody(), status, Qx::HTTPResponse::padding);
}

// Returns the message of the first error in an answer, to append to other text; empty if the user
// may have typed a password, since the service might repeat it.
std::string errorMessageOf(const Qx::HTTPResponse& response, const std::string& urnOrLink) {
    if (urnOrLink.find('@') != std::string::npos)
        return {};
    const Qx::JSONNode errors(jsonOf(response).value_or(Qx::JSONNode())["errors"]);
    if (!(errors.begin() != errors.end()))
        return {};
    const Qx::JSONNode first(*errors.begin());
    const std::string words = first["detail"].asHString(first["title"].asHString(""));
    return words.empty() ? "" : fmt::format(": \"{}\"", shortened(words, 200));
}

// Returns whether a successful answer could not be read because memory ran out; the library does
// not distinguish that from invalid JSON.
bool lacksMemory(const Qx::HTTPResponse& response) {
    if (jsonOf(response))
        return true; // There is enough memory again.
    try {
        static_cast<void>(Qx::JSONNode(std::string(response.getBody())));
        return false;
    } catch (const std::bad_alloc&) {
        return true;
    }
}

std::string explainUnread(const Qx::HTTPResponse& response, const std::string& urn, const CommandLine& commandLine) {
    if (lacksMemory(response))
        return fmt::format(
            "not enough memory to read the answer for {}; close other programs, or allow this program more memory",
            urn);
    return fmt::format("the answer for {} is not JSON; check {}", urn,
                       commandLine.service.empty() ? "the data" : "--service");
}

std::string retryAdvice(const Qx::HTTPResponse& response) {
    const std::string when = shortened(response.getHeader("Retry-After").value_or(""), 40);
    if (when.empty())
        return "try again later";
    const bool isNumber = when.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? "try again in " + when + " s" : "try again after " + when;
}

} // namespace

std::string explainFailure(const Qx::HTTPResponse& response, const std::string& urnOrLink,
                           const CommandLine& commandLine) {
    const std::string urn = shownURN(urnOrLink);
    const int status = response.getStatus();
    if (status == 0)
        return explainTransportFailure(response, urn, Orvane::FolderContentLink::isOrvaneFolderContentLink(urnOrLink),
                                       commandLine);
    if (response.isSuccessful())
        return explainUnread(response, urn, commandLine);
    const std::string words = errorMessageOf(response, urnOrLink);
    switch (status) {
    case 401:
        return fmt::format("the service does not accept the token (401){}; set ORVANE_TOKEN or --token-file to a valid "
                           "one",
                           words);
    case 403:
        return fmt::format("you are not allowed to see {} (403){}; ask its owner for access", urn, words);
    case 404:
        return fmt::format("the {} has nothing for {} (404){}; check the URN{}",
                           commandLine.service.empty() ? "sample service" : "service", urn, words,
                           commandLine.service.empty() ? ", or name your service with --service" : " and --service");
    case 429:
        return fmt::format("the service has received too many requests to answer the one for {} (429){}; {}", urn,
                           words, retryAdvice(response));
    default:
        return fmt::format("the service {} (status {}){}; {}",
                           status < 500 ? "rejected the request for " + urn : "failed to answer the request for " + urn,
                           status, words, status < 500 ? "check --service and the URN" : retryAdvice(response));
    }
}

std::string explainUnexpectedAnswer(const Qx::HTTPResponse& response, const std::string& urn, const char* what) {
    return fmt::format("the answer is not the {} of {}{}; check --service and the URN", what, shownURN(urn),
                       errorMessageOf(response, urn));
}

} // namespace OrvaneHost

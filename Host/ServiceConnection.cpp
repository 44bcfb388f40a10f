#include "Host/ServiceConnection.h"

#include "Base/QxBaseCore10/ApplicationOptions.h"
#include "Base/QxBaseCore10/CloudBrowser.h"
#include "Base/QxBaseCore10/Strings.h"
#include "HTTPClient/CurlHTTPClient.h"
#include "Host/AttemptText.h"
#include "Host/Console.h"
#include "Host/PathText.h"
#include "Host/TokenFile.h"

#include <boost/algorithm/string/replace.hpp>
#include <fmt/format.h>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace OrvaneHost {

namespace {

constexpr const char* optionsName = "orvane";

// Paths, which begin with "/", are appended directly to a base URL.
std::string withoutSlashAtEnd(std::string url) {
    while (url.ends_with('/'))
        url.pop_back();
    return url;
}

std::string tokenFor(const CommandLine& commandLine) {
    std::string token = readToken(commandLine.tokenFile, commandLine.timeout);
    if (!token.empty())
        return token;
    if (commandLine.service.empty())
        return sampleToken;
    throw std::runtime_error("there is no token; set ORVANE_TOKEN or name a file with --token-file");
}

Qx::CurlHTTPClientOptions optionsFor(const CommandLine& commandLine) {
    Qx::CurlHTTPClientOptions options;
    options.token = tokenFor(commandLine);
    options.requestTimeout = commandLine.timeout;
    options.stallTimeout = commandLine.timeout;
    options.maxBodyBytes = commandLine.maxSizeInMiB << 20;
    return options;
}

std::unique_ptr<Qx::CurlHTTPClient> makeClient(const Qx::CurlHTTPClientOptions& options) {
    try {
        return std::make_unique<Qx::CurlHTTPClient>(options);
    } catch (const std::invalid_argument& error) {
        throw std::runtime_error(fmt::format("{}; check --service and --v3-service", error.what()));
    } catch (const std::system_error&) {
        throw std::runtime_error(
            "not enough threads or descriptors for the HTTP client; close other programs, or raise the limits");
    }
}

void setServiceUrls(const std::string& service, const std::string& v3Service) {
    const auto options = Qx::ApplicationOptions::get(optionsName);
    options->set(L"orvaneServiceUrl", Qx::ToIString(service));
    options->set(L"orvaneV3ServiceUrl", Qx::ToIString(v3Service));
    Qx::ICloudBrowser::installOptionsName(optionsName);
}

} // namespace

ServiceConnection::ServiceConnection(const CommandLine& commandLine) : isVerbose_(commandLine.verbose) {
    Qx::CurlHTTPClientOptions options = optionsFor(commandLine);
    token_ = options.token;
    std::string service = withoutSlashAtEnd(commandLine.service);
    if (service.empty()) {
        localService_.emplace(Orvane::Testing::PreparedAnswers::sample(), options.token, 0);
        service = localService_->baseUri();
    }
    const std::string v3Service =
        commandLine.v3Service.empty() ? service + "/v3" : withoutSlashAtEnd(commandLine.v3Service);
    setServiceUrls(service, v3Service);
    options.tokenOrigins = {service, v3Service};
    options.executor = [this](std::function<void()> completion) { mainThread_.post(std::move(completion)); };
    observe(options);
    std::shared_ptr<Qx::IHTTPClient> client = makeClient(options);
    if (!commandLine.recordFolder.empty())
        client = recorder_ = std::make_shared<Orvane::Testing::RecordingHTTPClient>(
            std::move(client), pathOf(commandLine.recordFolder), Orvane::Testing::RecordingOptions{.secret = token_});
    orvanedm_.emplace(std::move(client), optionsName);
    orvanedm_->setAsync(commandLine.async || commandLine.urns.size() > 1);
    startProgressLine();
}

void ServiceConnection::observe(Qx::CurlHTTPClientOptions& options) {
    options.onResponse = [this](const Qx::HTTPRequest&, const Qx::HTTPResponse& response) {
        progressLine_.stop();
        response_ = response;
    };
    if (isVerbose_)
        options.onAttempt = [this](const Qx::HTTPAttempt& attempt) { printError(withoutToken(describe(attempt))); };
    else
        options.onProgress = [this](const Qx::HTTPProgress& progress) { progressLine_.update(progress); };
}

// With --verbose, the lines about attempts are shown instead.
void ServiceConnection::startProgressLine() {
    if (!isVerbose_)
        progressLine_.start();
}

Qx::Orvanedm& ServiceConnection::orvanedm() {
    return *orvanedm_;
}

std::string ServiceConnection::recordingProblem() const {
    return recorder_ ? recorder_->problem() : std::string();
}

void ServiceConnection::runCallbacks(const std::size_t& unanswered) {
    while (unanswered > 0) {
        startProgressLine();
        mainThread_.runNext();
    }
}

const Qx::HTTPResponse& ServiceConnection::response() const {
    return response_;
}

std::string ServiceConnection::withoutToken(std::string text) const {
    constexpr std::size_t minSecretLength = 8; // A shorter token might occur in ordinary words.
    if (token_.size() >= minSecretLength)
        boost::algorithm::replace_all(text, token_, "***");
    return text;
}

std::vector<Qx::Analytics::Report> ServiceConnection::events() const {
    return events_.all();
}

} // namespace OrvaneHost

#include "Host/ServiceConnection.h"

#include "Base/QxBaseCore10/ApplicationOptions.h"
#include "Base/QxBaseCore10/CloudBrowser.h"
#include "Base/QxBaseCore10/Strings.h"
#include "Host/HTTPClient/CurlHTTPClient.h"

#include <cstdlib>
#include <fmt/format.h>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace OrvaneHost {

namespace {

constexpr const char* optionsName = "orvane";

// Paths, which begin with "/", go directly behind an address.
std::string withoutSlashAtEnd(std::string address) {
    while (address.ends_with('/'))
        address.pop_back();
    return address;
}

std::string tokenFor(const CommandLine& commandLine) {
    std::string token = readToken(commandLine.tokenFile);
    if (!token.empty())
        return token;
    if (commandLine.service.empty())
        return sampleToken;
    throw std::runtime_error("there is no token; set ORVANE_TOKEN or name a file with --token-file");
}

void setAddresses(const std::string& service, const std::string& v3Service) {
    const auto options = Qx::ApplicationOptions::get(optionsName);
    options->set(L"orvaneServiceUrl", Qx::ToIString(service));
    options->set(L"orvaneV3ServiceUrl", Qx::ToIString(v3Service));
    Qx::ICloudBrowser::installOptionsName(optionsName);
}

} // namespace

std::string readToken(const std::string& tokenFile) {
    if (tokenFile.empty()) {
        const char* token = std::getenv("ORVANE_TOKEN");
        return token ? token : "";
    }
    std::ifstream file(tokenFile);
    std::string token;
    if (!(file >> token))
        throw std::runtime_error(fmt::format("can't read a token from \"{}\"; check --token-file", tokenFile));
    return token;
}

ServiceConnection::ServiceConnection(const CommandLine& commandLine) {
    CurlHTTPClientSettings settings;
    settings.token = tokenFor(commandLine);
    settings.requestTimeout = commandLine.timeout;

    std::string service = withoutSlashAtEnd(commandLine.service);
    if (service.empty()) {
        localService_.emplace(ServiceData::sample(), settings.token, 0);
        service = localService_->baseUri();
    }
    setAddresses(service, commandLine.v3Service.empty() ? service + "/v3" : withoutSlashAtEnd(commandLine.v3Service));

    Qx::Analytics::setEventSink([this](const Qx::Analytics::Report& event, bool) { events_.push_back(event); });
    httpClient_ = std::make_shared<ObservedHTTPClient>(std::make_unique<CurlHTTPClient>(settings));
    orvanedm_.emplace(httpClient_, optionsName);
    orvanedm_->setAsync(commandLine.async);
}

ServiceConnection::~ServiceConnection() {
    Qx::Analytics::setEventSink({});
}

Qx::Orvanedm& ServiceConnection::orvanedm() {
    return *orvanedm_;
}

std::vector<Qx::HTTPResponse> ServiceConnection::waitForResponses() {
    return httpClient_->waitForResponses();
}

const std::vector<Qx::Analytics::Report>& ServiceConnection::events() const {
    return events_;
}

std::string explainFailure(const Qx::HTTPResponse& response, const std::string& urn) {
    const int status = response.getStatus();
    if (response.isSuccessful())
        return fmt::format("the answer for {} is not JSON; check --service", urn);
    if (response.getReason().starts_with("refused: "))
        return fmt::format("the request for {} was {}", urn, response.getReason());
    switch (status) {
    case 0:
        return fmt::format("no answer for {}: {}; check --service and your network", urn, response.getReason());
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

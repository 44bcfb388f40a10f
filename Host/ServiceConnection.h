#pragma once

#include "Base/QxBaseCore10/Analytics.h"
#include "Host/CommandLine.h"
#include "Host/LocalService/LocalService.h"
#include "Host/ObservedHTTPClient.h"
#include "Server/Orvane/Orvanedm.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace OrvaneHost {

/// The token that the sample project is served under where the user has none of their own.
constexpr const char* sampleToken = "sample-token";

/// The user's token, from the file or else from the environment; empty if there is none. Throws
/// `std::runtime_error` with a message of one line if the file can't be read or is empty.
std::string readToken(const std::string& tokenFile);

/// All that one command needs to talk to the service: the service itself if it is the local one, its
/// addresses in the application options, the HTTP client and the library's client, and the usage events that
/// it tracks.
class ServiceConnection {
public:
    /// Throws `std::runtime_error` with a message of one line if there is no token for a service of the user's, or the
    /// token file can't be read.
    explicit ServiceConnection(const CommandLine& commandLine);
    ServiceConnection(const ServiceConnection&) = delete;
    ServiceConnection& operator=(const ServiceConnection&) = delete;
    ~ServiceConnection();

    Qx::Orvanedm& orvanedm();

    /// Waits as `ObservedHTTPClient::waitForResponses` does.
    std::vector<Qx::HTTPResponse> waitForResponses();

    /// The usage events tracked so far. Ask behind `waitForResponses`.
    const std::vector<Qx::Analytics::Report>& events() const;

private:
    std::optional<LocalService> localService_;
    std::vector<Qx::Analytics::Report> events_;
    std::shared_ptr<ObservedHTTPClient> httpClient_;
    std::optional<Qx::Orvanedm> orvanedm_;
};

/// What a failed request means for the user and what to do about it, in one line.
std::string explainFailure(const Qx::HTTPResponse& response, const std::string& urn);

} // namespace OrvaneHost

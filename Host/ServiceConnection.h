#pragma once

#include "Base/QxBaseCore10/Analytics.h"
#include "Host/CommandLine.h"
#include "Host/ObservedHTTPClient.h"
#include "Server/Orvane/Orvanedm.h"
#include "Testing/LocalService.h"
#include "Testing/RecordingHTTPClient.h"
#include "Testing/ScopedState.h"

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
/// URLs in the application options, the HTTP client and the library's client, and the usage events that
/// it tracks.
class ServiceConnection {
public:
    /// Throws an exception with a message of one line if there is no token for a service of the user's, the token file
    /// can't be read, a URL is invalid, or threads can't be started.
    explicit ServiceConnection(const CommandLine& commandLine);

    Qx::Orvanedm& orvanedm();

    /// Why the answers could not all be recorded, in one line; empty if they were, or were not to be.
    std::string recordingProblem() const;

    /// Waits as `ObservedHTTPClient::waitForResponses` does.
    std::vector<Qx::HTTPResponse> waitForResponses();

    /// The usage events tracked so far. Ask behind `waitForResponses`.
    std::vector<Qx::Analytics::Report> events() const;

private:
    std::optional<Orvane::Testing::LocalService> localService_;
    Orvane::Testing::CapturedEvents events_; // Before the client, whose completions track them until it has ended.
    std::shared_ptr<Orvane::Testing::RecordingHTTPClient> recorder_; // Null if nothing is recorded.
    std::shared_ptr<ObservedHTTPClient> httpClient_;
    std::optional<Qx::Orvanedm> orvanedm_;
};

} // namespace OrvaneHost

#pragma once

#include "Base/QxBaseCore10/Analytics.h"
#include "Host/CommandLine.h"
#include "Host/MainThread.h"
#include "Host/ProgressLine.h"
#include "Server/Orvane/Orvanedm.h"
#include "Testing/LocalService.h"
#include "Testing/RecordingHTTPClient.h"
#include "Testing/ScopedState.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Qx {
struct CurlHTTPClientOptions;
} // namespace Qx

namespace OrvaneHost {

/// The token that the sample project is served under where the user has none of their own.
constexpr const char* sampleToken = "sample-token";

/// All that one command needs to talk to the service: the service itself if it is the local one, its
/// URLs in the application options, the HTTP client and the library's client, and the usage events that
/// it tracks. Belongs to the main thread, in which all callbacks run.
class ServiceConnection {
public:
    /// Throws an exception with a message of one line if there is no token for a service of the user's, the token file
    /// can't be read, a URL is invalid, or threads can't be started.
    explicit ServiceConnection(const CommandLine& commandLine);

    Qx::Orvanedm& orvanedm();

    /// Why the answers could not all be recorded, in one line; empty if they were, or were not to be.
    std::string recordingProblem() const;

    /// Runs the callbacks of asynchronous requests in this thread as their responses come, until `unanswered`, which
    /// they count down, is 0.
    void runCallbacks(const std::size_t& unanswered);

    /// The response for which a callback runs, or the last has run.
    const Qx::HTTPResponse& response() const;

    /// A text for the user, with "***" for the token, which the service may have repeated.
    std::string withoutToken(std::string text) const;

    /// The usage events tracked so far.
    std::vector<Qx::Analytics::Report> events() const;

private:
    void observe(Qx::CurlHTTPClientOptions& options);
    void startProgressLine();

    std::optional<Orvane::Testing::LocalService> localService_;
    Orvane::Testing::CapturedEvents events_;
    MainThread mainThread_;
    bool isVerbose_;
    ProgressLine progressLine_;
    Qx::HTTPResponse response_;
    std::string token_;
    // After what the client's threads use until it has ended.
    std::shared_ptr<Orvane::Testing::RecordingHTTPClient> recorder_; // Null if nothing is recorded.
    std::optional<Qx::Orvanedm> orvanedm_;
};

} // namespace OrvaneHost

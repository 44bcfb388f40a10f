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

/// The token of the local service if the user has none of their own.
constexpr const char* sampleToken = "sample-token";

/// Everything a command needs to talk to the service: the service itself if it is the local one,
/// its URLs in the application options, the HTTP client, the library's client, and the usage events
/// tracked. Used only on the main thread, where all callbacks run.
class ServiceConnection {
public:
    /// Throws an exception with a one-line message if there is no token for the user's service, the
    /// token file can't be read, a URL is invalid, or threads can't be started.
    explicit ServiceConnection(const CommandLine& commandLine);

    Qx::Orvanedm& orvanedm();

    /// Returns why some answers could not be recorded, in one line; empty if all were recorded, or
    /// recording was not requested.
    std::string recordingProblem() const;

    /// Runs the callbacks of asynchronous requests on this thread as their responses arrive, until
    /// `unanswered`, which they count down, is 0.
    void runCallbacks(const std::size_t& unanswered);

    /// Returns the response whose callback is running, or ran last.
    const Qx::HTTPResponse& response() const;

    /// Returns a text for the user with "***" in place of the token, which the service may have
    /// repeated in its answer. Tokens of fewer than 8 characters are not replaced.
    std::string withoutToken(std::string text) const;

    /// Returns the usage events tracked so far.
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
    // Declared after the members that the client's threads use until it is destroyed.
    std::shared_ptr<Orvane::Testing::RecordingHTTPClient> recorder_; // Null if nothing is recorded.
    std::optional<Qx::Orvanedm> orvanedm_;
};

} // namespace OrvaneHost

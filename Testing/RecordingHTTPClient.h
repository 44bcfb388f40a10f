#pragma once

#include "Base/QxBase10/IHTTPClient.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace Orvane::Testing {

/// How a `RecordingHTTPClient` records.
struct RecordingOptions {
    /// Replaces names, ids and anything else that may identify a customer with made-up text of the
    /// same kind, so that a customer can share the recording. The same text always gets the same
    /// replacement. The service's own words, numbers that are not ids, and booleans are kept. A
    /// body that is not JSON is replaced with an "x" for each byte.
    bool anonymize = false;

    /// A string of at least 8 bytes, such as the token, that is replaced with "***" wherever it
    /// occurs in a response, since a service may repeat it. A shorter one is ignored.
    std::string secret{};
};

/// Wraps another HTTP client and saves each exchange to a folder, from which
/// `PreparedAnswers::fromFolder` and `orvane serve --data` read it: the method, URL, status,
/// headers, the body byte for byte, and the time it took; or the reason why there was no response.
/// If there are several exchanges for one URN, whatever their query, only the last is used when the
/// folder is read.
///
/// It saves no headers of the request, and no headers of the response whose name suggests a
/// credential (Set-Cookie, X-Api-Key and the like). From URLs it removes user name, password, and
/// the values of query parameters with such names. The body is saved unchanged, except as
/// `RecordingOptions` says.
///
/// If it can't write, requests proceed nevertheless, and `problem` says why. May be used from
/// several threads at once, if the other client may, and several recorders may write to one folder.
class RecordingHTTPClient : public Qx::IHTTPClient {
public:
    /// Creates the folder if it does not exist. Exchanges are added to those already in it.
    RecordingHTTPClient(std::shared_ptr<Qx::IHTTPClient> client, const std::filesystem::path& folder,
                        RecordingOptions options = {});
    ~RecordingHTTPClient() override;

    void queueRequest(Qx::HTTPRequest& request) override;
    void whenAllRequests(std::vector<Qx::HTTPRequest>& requests, BatchCallback callback,
                         Qx::HTTPRequest::ExecutionType executionType) override;

    /// Returns, in one line, why an exchange could not be saved, the latest if there were several;
    /// empty if all were saved.
    std::string problem() const;

private:
    class Recorder;

    // Returns a copy of the request whose callback records the exchange before it calls the
    // original one.
    Qx::HTTPRequest recorded(const Qx::HTTPRequest& request) const;

    const std::shared_ptr<Qx::IHTTPClient> client_;
    const std::shared_ptr<Recorder> recorder_; // Callbacks may use it after the client is gone.
};

} // namespace Orvane::Testing

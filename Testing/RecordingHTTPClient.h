#pragma once

#include "Base/QxBase10/IHTTPClient.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace Orvane::Testing {

/// How a `RecordingHTTPClient` records.
struct RecordingOptions {
    /// Replaces names, ids and whatever else may tell of a customer by made-up texts of the same kind, the same one by
    /// the same each time, so that a customer may hand out what was recorded. What stays are the service's own words,
    /// numbers that are no ids, and flags. Bodies that are not JSON are replaced by as many "x".
    bool makesUpNames = false;

    /// A text of 8 bytes or more, such as the token, which is replaced by "***" wherever it stands in a response:
    /// a service may repeat it. Empty for none.
    std::string secret{};
};

/// Stands in front of another HTTP client and keeps each exchange in a folder, from which `PreparedAnswers::fromFolder`
/// and `orvane serve --data` read it: method, URL, status, headers, the body byte for byte, and how long it took; or
/// why there was no response. Of several exchanges for one URN, whatever their query, the last is the one that is read.
///
/// It keeps no header of the request, and of the response none whose name says that it may hold a credential
/// (Set-Cookie, X-Api-Key and the like); of a URL neither a user name and password nor the values of such keys of its
/// query. A body is kept as it is.
///
/// If it can't write, requests go on all the same, and `problem` says so. May be used from several threads at once, as
/// far as the other client may, and several recorders may write into one folder.
class RecordingHTTPClient : public Qx::IHTTPClient {
public:
    /// Creates the folder if there is none. Exchanges are added to those that it holds.
    RecordingHTTPClient(std::shared_ptr<Qx::IHTTPClient> client, const std::filesystem::path& folder,
                        RecordingOptions options = {});
    ~RecordingHTTPClient() override;

    void queueRequest(Qx::HTTPRequest& request) override;
    void whenAllRequests(std::vector<Qx::HTTPRequest>& requests, BatchCallback callback,
                         Qx::HTTPRequest::ExecutionType executionType) override;

    /// Why the last exchange that could not be written was not, in one line; empty if all were.
    std::string problem() const;

private:
    class Recorder;

    // Of a request, with the completion that records it first.
    Qx::HTTPRequest recorded(const Qx::HTTPRequest& request) const;

    const std::shared_ptr<Qx::IHTTPClient> client_;
    const std::shared_ptr<Recorder> recorder_; // Completions may outlive the client.
};

} // namespace Orvane::Testing

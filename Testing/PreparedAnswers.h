#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"
#include "Testing/Endpoint.h"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Orvane::Testing {

/// Responses, or transport failures, that are prepared for requests: for the three kinds that the
/// library sends, by URN, and for any other request by method and URL. A plain value; may be read
/// from several threads at once.
class PreparedAnswers {
public:
    /// The method of a request.
    using Method = Qx::HTTPRequest::Method;

    /// Returns the answers of the sample project, the one that the program `orvane` shows.
    static PreparedAnswers sample();

    /// Reads what a `RecordingHTTPClient` has written to `folder`, and the files *.json in its
    /// subfolders "folders", "assemblies" and "access", if they exist. Each such file is the body
    /// of the response for the URN in its key "data.id", with the status of the first of its
    /// "errors" (500 if that error has none), or 200 if there are no errors. Throws `std::runtime_error` with a
    /// one-line message if there are no answers at all, a file is not an answer, its status is not between 200 and 599,
    /// or two such files answer for the same URN.
    static PreparedAnswers fromFolder(const std::filesystem::path& folder);

    /// Prepares the answer to requests of that kind for that URN, replacing any previous one.
    void add(Endpoint endpoint, Qx::HTTPResponse response);

    /// Prepares the answer to requests with that method and URL. A URL that begins with "/" matches
    /// any host. If the URL is that of an `Endpoint`, the answer is for all requests to that
    /// endpoint.
    void add(Method method, const std::string& url, Qx::HTTPResponse response);

    /// Prepares an answer in the form of the JSON files of `fromFolder`, and returns the URN that
    /// it answers for. Throws `std::runtime_error`, with `origin` in its message, if `json` is not
    /// such an answer.
    std::string addJSON(Endpoint::Kind kind, const std::string& json, const std::string& origin);

    /// Prepares the answer to all requests that have no answer of their own.
    void addForAny(Qx::HTTPResponse response);

    /// Returns the answer that is prepared for such a request; nothing if there is none.
    std::optional<Qx::HTTPResponse> find(Method method, const std::string& url) const;

    /// Returns a human-readable line for each request that has an answer.
    std::vector<std::string> expectedRequests() const;

private:
    std::map<Endpoint, Qx::HTTPResponse> byURN_;
    std::map<std::pair<Method, std::string>, Qx::HTTPResponse> byURL_;
    std::optional<Qx::HTTPResponse> forAny_;
};

} // namespace Orvane::Testing

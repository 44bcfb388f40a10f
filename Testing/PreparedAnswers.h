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

/// Responses, or transport failures, that are prepared for requests: for the three that the library sends, by the URN
/// that they ask for, and for any other by method and URL. A plain value; may be read from several threads at once.
class PreparedAnswers {
public:
    using Method = Qx::HTTPRequest::Method;

    /// The sample project that the program `orvane` shows.
    static PreparedAnswers sample();

    /// Reads what a `RecordingHTTPClient` has written into `folder`, and the files *.json in its folders "folders",
    /// "assemblies" and "access", as far as they are there: each such file is the body of the response for the URN
    /// under its key "data.id", with the status of the first of its "errors", or 200. Throws `std::runtime_error` with
    /// a message of one line if there is no answer at all, a file is none, its status is not from 200 to 599, or two
    /// such files answer for the same URN.
    static PreparedAnswers fromFolder(const std::filesystem::path& folder);

    /// Prepares the answer to requests for that URN, in place of one that is there.
    void add(Endpoint endpoint, Qx::HTTPResponse response);

    /// Prepares the answer to requests with that method and URL. A URL that begins with "/" stands for any host. If the
    /// URL is that of a request for a URN, it stands for all such requests.
    void add(Method method, const std::string& url, Qx::HTTPResponse response);

    /// Prepares JSON with a key "data.id", as in the files of `fromFolder`, and returns the URN that it answers for.
    /// Throws `std::runtime_error`, with `origin` in its message, if it is none.
    std::string addJSON(Endpoint::Kind kind, const std::string& json, const std::string& origin);

    /// Prepares the answer to all requests for which there is no other.
    void addForAny(Qx::HTTPResponse response);

    /// The answer that is prepared for such a request; nothing if there is none.
    std::optional<Qx::HTTPResponse> find(Method method, const std::string& url) const;

    /// The requests for which there are answers, one line each, for a person.
    std::vector<std::string> expectedRequests() const;

private:
    std::map<Endpoint, Qx::HTTPResponse> byURN_;
    std::map<std::pair<Method, std::string>, Qx::HTTPResponse> byURL_;
    std::optional<Qx::HTTPResponse> forAny_;
};

} // namespace Orvane::Testing

#pragma once

#include "Base/QxBase10/HTTPResponse.h"

#include <optional>
#include <string>
#include <string_view>

namespace Qx::Detail {

/// The header of a response, and how it frames the body. libcurl overlooks some of what makes a
/// response ambiguous, and an intermediary may have interpreted it differently.
class ResponseHeader {
public:
    /// Takes the next line as libcurl passes it: interim responses come first, each starting with
    /// its status line, and trailers come after the body. `isHTTP2` says whether the connection
    /// uses HTTP/2. Throws `TransferError` if the header is malformed or ambiguous.
    void readLine(std::string_view line, bool isHTTP2);

    bool hasEnded() const;

    /// Moves out the name and value of each header, in the order in which they came.
    HTTPResponse::Headers takeFields();

    /// Returns the value of the first header of that name; empty if there is none.
    std::string field(const std::string& name) const;

    /// From the last status line.
    int status() const;
    const std::string& protocol() const;

    /// Returns where the response redirects to; empty if it does not.
    const std::string& redirection() const;

    bool isGzip() const;

    /// Returns whether only the end of the connection marks the end of the body.
    bool endsWithConnection() const;

private:
    enum class Phase { AWAITED, OPEN, ENDED };

    void start(std::string_view statusLine, bool isHTTP2);
    void readField(const std::string& name, const std::string& value);
    void readFraming(const std::string& name, const std::string& value);

    Phase phase_ = Phase::AWAITED;
    int status_ = 0;
    std::string protocol_;
    std::optional<std::string> length_;
    bool isChunked_ = false;
    bool isGzip_ = false;
    std::optional<std::string> location_;
    HTTPResponse::Headers fields_;
};

} // namespace Qx::Detail

#pragma once

#include "Base/QxBase10/HTTPResponse.h"

#include <optional>
#include <string>
#include <string_view>

namespace Qx::Detail {

/// The header of a response, and how it says that the body is framed. libcurl overlooks some of what makes a response
/// ambiguous; whoever stands between may have understood it otherwise.
class ResponseHeader {
public:
    /// Takes the next line, as libcurl passes it: those of interim responses and of a proxy's answer to CONNECT come
    /// first, each starting with its status line, and trailers come after the body. `isHTTP2` says what the connection
    /// speaks. Throws `TransferError`.
    void readLine(std::string_view line, bool isHTTP2);

    bool hasEnded() const;

    /// Name and value of each header, in the order in which they came.
    HTTPResponse::Headers takeFields();

    /// The value of the first header of that name; empty if there is none.
    std::string field(const std::string& name) const;

    /// As its last status line says.
    int status() const;
    const std::string& protocol() const;

    /// Where the response redirects to; empty if it does not.
    const std::string& redirection() const;

    bool isGzip() const;

    /// Whether nothing but the end of the connection tells where the body ends.
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

#pragma once

#include "Base/QxBase10/qxbase10_export.h"

#include <boost/assert/source_location.hpp>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace Qx {

class HTTPResponse;

/// One HTTP request, without a body, that an `IHTTPClient` is to send. A plain value, which may be read from several
/// threads at once; nothing in it is checked here. Setters replace the previous value, except `setHeader`.
class QXBASE10_EXPORT HTTPRequest {
public:
    enum class Method : std::int32_t { GET = 0, POST = 1 };

    enum class AuthType : std::int32_t {
        NONE = 0,
        BEARER = 1, ///< The client adds the signed-in user's bearer token.
    };

    enum class ExecutionType : std::int32_t {
        CALLING_THREAD = 0, ///< Answered in the calling thread, before the request is handed back.
        CLIENT_THREAD = 1,  ///< Answered on a thread of the client; the call returns at once.
    };

    using Callback = std::function<void(const HTTPResponse& response)>;
    using Header = std::pair<std::string, std::string>;

    /// An empty request: GET, no authentication, in the calling thread. `location` tells where it was formed.
    explicit HTTPRequest(const boost::source_location& location);

    /// The whole URL, query included.
    const std::string& getURL() const;
    void setURL(const std::string& url);
    void setURL(std::string&& url);

    AuthType getAuthType() const;
    void setAuthType(AuthType authType);

    /// The headers as name and value, in the order in which they were added.
    const std::vector<Header>& getHeaders() const;
    /// Appends a header, even if there is one of that name already.
    void setHeader(const std::string& name, const std::string& value);

    Method getMethod() const;
    void setMethod(Method method);

    /// What the client is to call with the response, once. May be empty: then nobody is told.
    const Callback& getCallback() const;
    void setCallback(const Callback& callback);

    /// The name of the thread that delivers the response, while it does.
    const std::string& getThreadName() const;
    void setThreadName(const std::string& threadName);

    /// Where the request was formed.
    const boost::source_location& getLocation() const;

    /// The thread in which the request is to be answered.
    ExecutionType executionType = ExecutionType::CALLING_THREAD;

private:
    boost::source_location location_;
    std::string url_;
    AuthType authType_ = AuthType::NONE;
    std::vector<Header> headers_;
    Method method_ = Method::GET;
    Callback callback_;
    std::string threadName_;
};

} // namespace Qx

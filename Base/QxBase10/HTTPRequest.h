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

/// An HTTP request without a body, for an `IHTTPClient` to send. A plain value, which may be read
/// from several threads at once; it does not validate its contents. Setters replace the previous
/// value, except `setHeader`, which appends.
class QXBASE10_EXPORT HTTPRequest {
public:
    /// The method of a request.
    enum class Method : std::int32_t {
        GET = 0,  ///< Reads from the service.
        POST = 1, ///< Requests an action of the service.
    };

    /// The credential that the client adds to a request.
    enum class AuthType : std::int32_t {
        NONE = 0,   ///< No credential.
        BEARER = 1, ///< The client adds the signed-in user's bearer token.
    };

    /// Where the callback of a request runs.
    enum class ExecutionType : std::int32_t {
        CALLING_THREAD = 0, ///< The callback runs in the calling thread before the call returns.
        CLIENT_THREAD = 1,  ///< The call returns at once; the callback runs on a client thread.
    };

    /// Receives the response.
    using Callback = std::function<void(const HTTPResponse& response)>;
    /// The name and value of a header.
    using Header = std::pair<std::string, std::string>;

    /// A GET request without a URL, headers or authentication, whose callback runs in the calling
    /// thread. `location` is the place in the source code where it is created.
    explicit HTTPRequest(const boost::source_location& location);

    /// The complete URL, including the query.
    const std::string& getURL() const;
    /// Sets the URL, including the query.
    void setURL(const std::string& url);
    /// The same, without a copy.
    void setURL(std::string&& url);

    /// The credential to add; `NONE` by default.
    AuthType getAuthType() const;
    /// Sets the credential to add.
    void setAuthType(AuthType authType);

    /// The headers as pairs of name and value, in the order in which they were added.
    const std::vector<Header>& getHeaders() const;
    /// Appends a header, even if there already is one of that name.
    void setHeader(const std::string& name, const std::string& value);

    /// The method; `GET` by default.
    Method getMethod() const;
    /// Sets the method.
    void setMethod(Method method);

    /// The callback to which the client passes the response, exactly once. May be empty.
    const Callback& getCallback() const;
    /// Sets the callback.
    void setCallback(const Callback& callback);

    /// The name of the client's thread while it delivers the response.
    const std::string& getThreadName() const;
    /// Sets the name of that thread.
    void setThreadName(const std::string& threadName);

    /// Where in the source code the request was created.
    const boost::source_location& getLocation() const;

    /// The thread in which the callback is to run.
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

#include "Base/QxBase10/HTTPRequest.h"

namespace Qx {

HTTPRequest::HTTPRequest(const boost::source_location& location) : location_(location) {}

const std::string& HTTPRequest::getURL() const {
    return url_;
}

void HTTPRequest::setURL(const std::string& url) {
    url_ = url;
}

void HTTPRequest::setURL(std::string&& url) {
    url_ = std::move(url);
}

HTTPRequest::AuthType HTTPRequest::getAuthType() const {
    return authType_;
}

void HTTPRequest::setAuthType(AuthType authType) {
    authType_ = authType;
}

const std::vector<HTTPRequest::Header>& HTTPRequest::getHeaders() const {
    return headers_;
}

void HTTPRequest::setHeader(const std::string& name, const std::string& value) {
    headers_.emplace_back(name, value);
}

HTTPRequest::Method HTTPRequest::getMethod() const {
    return method_;
}

void HTTPRequest::setMethod(Method method) {
    method_ = method;
}

const HTTPRequest::Callback& HTTPRequest::getCallback() const {
    return callback_;
}

void HTTPRequest::setCallback(const Callback& callback) {
    callback_ = callback;
}

const std::string& HTTPRequest::getThreadName() const {
    return threadName_;
}

void HTTPRequest::setThreadName(const std::string& threadName) {
    threadName_ = threadName;
}

const boost::source_location& HTTPRequest::getLocation() const {
    return location_;
}

} // namespace Qx

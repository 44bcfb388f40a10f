#pragma once

#include "HTTPClient/Detail/Curl.h"

#include <string>

namespace Qx::Detail {

/// Where a request goes: an http or https URL as parsed by libcurl, so that the host checked here
/// is the host that libcurl connects to. When memory runs out, the constructor and `redirected`
/// throw `std::bad_alloc` rather than treat a part of the URL as missing, since security checks
/// depend on it.
class Destination {
public:
    explicit Destination(const std::string& url);

    /// Returns where the header "Location: `location`", absolute or relative, leads from here.
    Destination redirected(const std::string& location) const;

    /// Returns why no request may be sent there, in one line; empty if one may.
    const std::string& refusal() const;

    bool isHttps() const;

    /// Returns whether it is a loopback address, which can only be this machine.
    bool isLocal() const;

    /// Returns whether it is a loopback address or may lead to this machine in another way.
    bool mayBeLocal() const;

    /// Returns whether scheme, host and port are the same.
    bool isSameOrigin(const Destination& other) const;

    /// Returns the port as digits, or the scheme's default port if the URL names none; empty if the
    /// URL is invalid.
    const std::string& port() const;

    /// Returns scheme, host and port for display; empty if they may contain part of a password.
    std::string name() const;

    /// Returns the URL for a log: without the values of its query and without a fragment.
    std::string withoutValues() const;

    /// The parsed URL, owned by this object.
    CURLU* url() const;

private:
    Destination(CurlUrl url, const std::string& text, unsigned flags);

    CurlUrl url_;
    std::string scheme_;
    std::string host_;
    std::string port_;
    std::string text_;
    bool isNamed_ = false;
    std::string refusal_;
};

/// Returns whether the host name or address always refers to the machine itself.
bool isLoopback(const std::string& host);

/// Returns whether it is the URL of a proxy of a supported kind, with or without credentials.
bool isProxyURL(const std::string& url);

} // namespace Qx::Detail

#pragma once

#include "HTTPClient/Detail/Curl.h"

#include <string>

namespace Qx::Detail {

/// Where a request goes: an http or https URL, as libcurl understands it, so that nothing can be taken for another
/// host here than where it is sent. The constructor and `redirected` throw `std::bad_alloc` rather than take what there
/// is no memory for as missing: much hangs on what a URL holds.
class Destination {
public:
    explicit Destination(const std::string& url);

    /// Where the header "Location: `location`" leads from here, relative or not.
    Destination redirected(const std::string& location) const;

    /// Why nothing may be sent there, in one line; empty if something may.
    const std::string& refusal() const;

    bool isHttps() const;

    /// Whether it is a loopback address, which no other machine can stand behind.
    bool isLocal() const;

    /// Whether it may lead to this machine in another way too.
    bool mayBeLocal() const;

    /// Whether scheme, host and port are the same.
    bool isSameOrigin(const Destination& other) const;

    /// In digits, the default of the scheme too; empty if the URL is none.
    const std::string& port() const;

    /// Scheme, host and port, for a person; empty if they may hold a part of a password.
    std::string name() const;

    /// The URL for a log: without the values of its query, and without a fragment.
    std::string withoutValues() const;

    /// Belongs to this object.
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

/// Whether the host's name or address is one by which each machine calls itself.
bool isLoopback(const std::string& host);

/// Whether it is the URL of a proxy of a known kind, with or without credentials.
bool isProxyURL(const std::string& url);

} // namespace Qx::Detail

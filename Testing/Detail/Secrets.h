#pragma once

#include "Base/QxBase10/HTTPResponse.h"

#include <string>

namespace Orvane::Testing::Detail {

/// Returns the URL without user name and password, and with "***" for the value of each query
/// parameter whose name suggests a credential.
std::string withoutSecrets(const std::string& url);

/// Returns the response without the headers whose name suggests a credential, or whose value is a
/// URL with one. For a transport failure, the reason is removed if it contains such a URL.
Qx::HTTPResponse withoutSecrets(const Qx::HTTPResponse& response);

/// Returns the response with "***" for `secret` in its body, its headers and its reason.
Qx::HTTPResponse without(const std::string& secret, const Qx::HTTPResponse& response);

} // namespace Orvane::Testing::Detail

#pragma once

#include "Base/QxBase10/HTTPResponse.h"

#include <string>

namespace Orvane::Testing::Detail {

/// The URL without a user name and password, and with "***" for each value of its query whose key names a credential.
std::string withoutSecrets(const std::string& url);

/// The response without the headers whose name says that they may hold a credential, or that hold a URL with one. Of a
/// transport failure, without a reason that does.
Qx::HTTPResponse withoutSecrets(const Qx::HTTPResponse& response);

/// The response with "***" for the text in its body, its headers and its reason.
Qx::HTTPResponse without(const std::string& secret, const Qx::HTTPResponse& response);

} // namespace Orvane::Testing::Detail

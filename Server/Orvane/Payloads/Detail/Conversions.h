#pragma once

#include "Base/QxBaseCore10/CloudBrowser.h"
#include "Server/Orvane/Payloads/ContainerStatus.h"
#include "Server/Orvane/Payloads/ContainerType.h"

#include <string>

// Private: converts the service's strings to enumerators. Strings must match exactly; an unknown
// one, including the empty string, becomes `OTHER`.
namespace Orvane::Payloads {

ContainerType containerTypeFromString(const std::string& text);
ContainerStatus containerStatusFromString(const std::string& text);
Qx::CloudBrowser::Relationship::RelationType relationTypeFromString(const std::string& text);

} // namespace Orvane::Payloads

#pragma once

#include "Base/QxBaseCore10/CloudBrowser.h"
#include "Server/Orvane/Payloads/ContainerStatus.h"
#include "Server/Orvane/Payloads/ContainerType.h"

#include <string>

// Private: the service's texts as enumerators. Texts are compared whole, byte for byte; one that is not
// known, the empty one included, gives `OTHER`.
namespace Orvane::Payloads {

ContainerType containerTypeFromString(const std::string& text);
ContainerStatus containerStatusFromString(const std::string& text);
Qx::CloudBrowser::Relationship::RelationType relationTypeFromString(const std::string& text);

} // namespace Orvane::Payloads

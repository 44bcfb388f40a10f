#pragma once

#include "Host/Report.h"

#include <string>

namespace Qx {
class JSONNode;
}

namespace OrvaneHost {

/// The folders and files of a folder's contents for a person, or the whole answer as it came where it has
/// none under "included.folders" and "included.files".
std::string folderText(const std::string& urn, const Qx::JSONNode& contents);

/// The answer as it came, with the URN that it answers for, as one line of JSON.
std::string folderJSON(const std::string& urn, const Qx::JSONNode& contents);

} // namespace OrvaneHost

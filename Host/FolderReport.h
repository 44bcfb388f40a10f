#pragma once

#include "Host/Report.h"

#include <string>

namespace Qx {
class JSONNode;
}

namespace OrvaneHost {

/// Prints the folders and files of a folder's contents as `printText` does, or the whole answer as it came where it has
/// none under "included.folders" and "included.files".
void printFolder(const std::string& urn, const Qx::JSONNode& contents, bool isWide);

/// The answer as it came, with the URN that it answers for, as one line of JSON like that of `toJSON`.
std::string folderJSON(const std::string& urn, const Qx::JSONNode& contents);

} // namespace OrvaneHost

#pragma once

#include "Host/Report.h"

#include <string>
#include <string_view>

namespace Qx {
class JSONNode;
}

namespace OrvaneHost {

/// Whether an answer, of which `body` is the text, may hold the contents of that folder: an object without errors, of
/// no other folder.
bool holdsFolder(const std::string& urnOrLink, const Qx::JSONNode& contents, std::string_view body);

/// Prints the folders and files of a folder's contents as `printText` does, or the whole answer as it came where it has
/// none under "included.folders" and "included.files".
void printFolder(const std::string& urn, const Qx::JSONNode& contents, bool isWide);

/// The answer as it came, with the URN that it answers for, as one line of JSON like that of `toJSON`.
std::string folderJSON(const std::string& urn, const Qx::JSONNode& contents);

} // namespace OrvaneHost

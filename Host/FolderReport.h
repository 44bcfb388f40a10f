#pragma once

#include "Host/Report.h"

#include <string>
#include <string_view>

namespace Qx {
class JSONNode;
}

namespace OrvaneHost {

/// Returns whether an answer with that `body` may be the contents of that folder: a JSON object
/// without errors that does not name another folder.
bool holdsFolder(const std::string& urnOrLink, const Qx::JSONNode& contents, std::string_view body);

/// Prints the folders and files in a folder's contents as `printText` does, or the whole answer as
/// received if it has neither "included.folders" nor "included.files".
void printFolder(const std::string& urn, const Qx::JSONNode& contents, bool isWide);

/// Returns the answer as received, with the URN that was requested, as one line of JSON like that
/// of `toJSON`.
std::string folderJSON(const std::string& urn, const Qx::JSONNode& contents);

} // namespace OrvaneHost

#pragma once


#include <string>

namespace Qx {
class JSONNode;
}

namespace OrvaneHost {

/// The answer for a person, as it came.
std::string folderText(const std::string& urn, const Qx::JSONNode& contents);

/// The answer as it came, with the URN that it answers for, as one line of JSON.
std::string folderJSON(const std::string& urn, const Qx::JSONNode& contents);

} // namespace OrvaneHost

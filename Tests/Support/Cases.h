#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

/// Returns the JSON of a file in Tests/Cases.
nlohmann::json casesOf(const std::string& file);

/// Returns the same for tests whose results differ between systems: on Windows, the members of a
/// row's "onWindows" replace those of the row.
nlohmann::json casesOf(const std::string& file, const std::string& system);

/// Converts each character of a JSON string to one byte.
std::string bytesOf(const nlohmann::json& text);

/// Returns the first of `parts` that does not occur in `text` after the start of the part before
/// it, or an empty string if all occur in that order.
std::string firstMissingPart(const std::string& text, const std::vector<std::string>& parts);

/// Returns the service's answer for version 3 of file A, which is in a folder and refers to version
/// 1 of file B, which is in a project. There are parents of every status. The ids of files, folders
/// and projects are too long for the small-string optimisation, so that each copy of one needs an
/// allocation.
std::string wholeAssembly();

/// The ids of a file, a folder and a project in `wholeAssembly`.
inline const std::vector<std::string> wholeAssemblyIds{"urn:vrnk.dorlqa:dm.lineage:A",
                                                       "urn:vrnk.dorlqa:fs.folder:folderA", "1234567890123456"};

#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

/// The JSON of a file in Tests/Cases.
nlohmann::json casesOf(const std::string& file);

/// The same for tests of what differs between systems: what a row says under "onWindows" holds on Windows.
nlohmann::json casesOf(const std::string& file, const std::string& system);

/// The bytes of a text whose characters stand for one each.
std::string bytesOf(const nlohmann::json& text);

/// The first of `parts` that doesn't begin in `text` after the one before it; empty if they all come in that order.
std::string missingPart(const std::string& text, const std::vector<std::string>& parts);

/// The service's answer for version 3 of file A, which lies in a folder and refers to version 1 of file B, in a
/// project. There are parents of every status. Its texts are too long to be held in place, so that each asks for
/// memory.
std::string wholeAssembly();

/// A file, a folder and a project that are in it.
inline const std::vector<std::string> wholeAssemblyIds{"urn:vrnk.dorlqa:dm.lineage:A",
                                                       "urn:vrnk.dorlqa:fs.folder:folderA", "1234567890123456"};

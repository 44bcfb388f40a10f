#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

/// The JSON of a file in Tests/Cases.
nlohmann::json casesOf(const std::string& file);

/// The service's answer for version 3 of file A, which lies in a folder and refers to version 1 of file B, in a
/// project.
std::string wholeAssembly();

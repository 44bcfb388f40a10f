#pragma once

#include <cstddef>
#include <string>

namespace OrvaneBenchmarks {

/// The service's answer, as JSON, for an assembly of that many files. Beside each file it holds one version, 1.5
/// relationships, a tenth of a folder and a fiftieth of a project, and one project more. Ids have about 60 bytes and
/// come in random order, one name in five goes beyond ASCII, and half of all bytes stand under keys that nobody
/// reads. The same number of files always gives the same text.
std::string makeAssemblyBody(std::size_t files);

} // namespace OrvaneBenchmarks

#pragma once

#include <cstddef>
#include <string>

namespace OrvaneBenchmarks {

/// Returns the service's answer, as JSON, for an assembly of `files` files. For each file it
/// contains one version, 1.5 relationships, a tenth of a folder and a fiftieth of a project, plus
/// one more project. Ids have about 60 bytes and are in random order, one name in five is not
/// ASCII, and half of all bytes are under keys that no reader uses. The same number of files always
/// produces the same text.
std::string makeAssemblyBody(std::size_t files);

} // namespace OrvaneBenchmarks

#pragma once

#include "Benchmarks/PlainAssembly.h"

#include <string_view>

// What the readers that do not use the library share: the service's vocabulary, and what they
// derive from the records.
namespace OrvaneBenchmarks {

inline constexpr std::string_view configuration = "Configuration"; ///< A kind of file.
inline constexpr std::string_view viewer = "VIEWER";               ///< A role.
inline constexpr std::string_view controlled = "CONTROLLED";       ///< A community type.

ContainerType containerTypeOf(std::string_view text);
ContainerStatus containerStatusOf(std::string_view text);
RelationType relationTypeOf(std::string_view text);

/// Fills in `directReferencedFiles`, the files that the assembly's own version refers to or is
/// referred to by, from the versions and relationships.
void findDirectReferences(PlainAssembly& assembly);

} // namespace OrvaneBenchmarks

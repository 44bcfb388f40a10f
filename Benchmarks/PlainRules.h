#pragma once

#include "Benchmarks/PlainAssembly.h"

#include <string_view>

// What the readers that do without the library know of the service's words, and work out from what they have read.
namespace OrvaneBenchmarks {

inline constexpr std::string_view configuration = "Configuration"; ///< A kind of file.
inline constexpr std::string_view viewer = "VIEWER";               ///< A role.
inline constexpr std::string_view controlled = "CONTROLLED";       ///< A type of community.

ContainerType containerTypeOf(std::string_view text);
ContainerStatus containerStatusOf(std::string_view text);
RelationType relationTypeOf(std::string_view text);

/// The files that the assembly's own version refers to or is referred to by, from its versions and relationships.
void findDirectReferences(PlainAssembly& assembly);

} // namespace OrvaneBenchmarks

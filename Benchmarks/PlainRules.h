#pragma once

#include "Benchmarks/PlainAssembly.h"

#include <string_view>

// What the readers that do without the library know of the service's words, and work out from what they have read.
namespace OrvaneBenchmarks {

ContainerType containerTypeOf(std::string_view text);
ContainerStatus containerStatusOf(std::string_view text);
RelationType relationTypeOf(std::string_view text);

/// The files that the assembly's own version refers to or is referred to by, from its versions and relationships.
void findDirectReferences(PlainAssembly& assembly);

} // namespace OrvaneBenchmarks

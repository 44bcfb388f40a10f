#pragma once

#include <cstdint>

namespace Orvane::Payloads {

/// The state of a folder or project.
enum class ContainerStatus : std::int32_t {
    ACTIVE = 0,   ///< "Active"; also a project whose JSON has no status.
    ARCHIVED = 1, ///< "Archived".
    INACTIVE = 2, ///< "Inactive".
    DELETED = 3,  ///< "Deleted".
    OTHER = 4,    ///< Any other text; also a folder whose JSON has no status.
    UNSET = 5,    ///< A folder that was not read from JSON of type "folders".
};

} // namespace Orvane::Payloads

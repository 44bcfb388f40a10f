#pragma once

#include <cstdint>

namespace Orvane::Payloads {

/// The kind of container that a file is in, or that a folder is.
enum class ContainerType : std::int32_t {
    OTHER = 0,   ///< Any other text, or none.
    FOLDER = 1,  ///< "FOLDER" or "folders".
    PROJECT = 2, ///< "PROJECT" or "projects".
};

} // namespace Orvane::Payloads

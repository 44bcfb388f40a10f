#pragma once

#include "Base/QxBase10/HTTPRequest.h"

#include <optional>
#include <string>

namespace Orvane::Testing {

/// A request that the library sends to the service, identified without the service's base URL.
struct Endpoint {
    /// What the request is for.
    enum class Kind {
        FOLDER_CONTENTS,      ///< GET .../folders/{folder URN}/content
        FULL_ASSEMBLY,        ///< GET .../versions/{version URN}/fullassembly
        FULL_ASSEMBLY_ACCESS, ///< POST .../versions/{version URN}/fullassembly/access
    };

    /// What the request is for.
    Kind kind = Kind::FOLDER_CONTENTS;
    /// The URN of the folder or version, decoded.
    std::string urn;

    /// Compares kind and URN.
    auto operator<=>(const Endpoint&) const = default;

    /// Returns the request that a method and a URL, or just its path, identify, ignoring the query;
    /// nothing if it is not one of these.
    static std::optional<Endpoint> of(Qx::HTTPRequest::Method method, const std::string& url);
};

} // namespace Orvane::Testing

#pragma once

#include "Base/QxBase10/qxbase10_export.h"

namespace Qx {

class HTTPResponse;
class JSONNode;
class Status;

/// What is done with responses. May be used from several threads at once.
class QXBASE10_EXPORT HTTPUtils {
public:
    HTTPUtils() = delete;

    /// Parses the response's body, whatever its status, into `node` and gives true. If the body is not JSON, as
    /// an empty one is not, or the parser runs out of memory: false, `node` untouched, the reason in `status`. Where
    /// there is no memory for the node itself, `std::bad_alloc` is thrown. Linear in the length of the body, which is
    /// not copied and may go away afterwards.
    static bool extractJSON(Status& status, const HTTPResponse& response, JSONNode& node);
};

} // namespace Qx

#pragma once

#include "Base/QxBase10/qxbase10_export.h"

namespace Qx {

class HTTPResponse;
class JSONNode;
class Status;

/// Operations on responses. May be used from several threads at once.
class QXBASE10_EXPORT HTTPUtils {
public:
    HTTPUtils() = delete;

    /// Parses the body of the response, whatever the response's status, into `node` and returns
    /// true. If the body is not JSON (an empty one is not), or the parser runs out of memory,
    /// returns false, leaves `node` unchanged and puts the reason into `status`. Throws
    /// `std::bad_alloc` if there is no memory for the node itself. Linear in the length of the
    /// body, which need not outlive the call and is copied only if it has to be repaired (see
    /// `JSONNode`).
    static bool extractJSON(Status& status, const HTTPResponse& response, JSONNode& node);
};

} // namespace Qx

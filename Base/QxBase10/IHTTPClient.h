#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"
#include "Base/QxBase10/qxbase10_export.h"

#include <functional>
#include <vector>

namespace Qx {

/// The way out for every request. The host supplies the object; it must bear calls from several threads at
/// once. Whatever happens to a request, its callback is called once.
class QXBASE10_EXPORT IHTTPClient {
public:
    using BatchCallback = std::function<void(std::vector<HTTPResponse> responses)>;

    /// Sends the request and calls its callback with the response, in the thread that its `executionType`
    /// asks for. What the client needs of `request` it takes during the call: the caller destroys the object
    /// on return.
    virtual void queueRequest(HTTPRequest& request) = 0;

    /// Sends all the requests, calls the callback of each, and then, once, `callback` with the responses in
    /// the order of the requests. `executionType` stands for that of each request. The caller destroys the
    /// vector on return.
    virtual void whenAllRequests(std::vector<HTTPRequest>& requests, BatchCallback callback,
                                 HTTPRequest::ExecutionType executionType) = 0;

    virtual ~IHTTPClient();
};

} // namespace Qx

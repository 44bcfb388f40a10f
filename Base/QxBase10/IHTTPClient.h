#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"
#include "Base/QxBase10/qxbase10_export.h"

#include <functional>
#include <vector>

namespace Qx {

/// Sends every request of the library. The application supplies the object: a `CurlHTTPClient`, or one of its own on
/// the HTTP stack that it has. One who implements it keeps to this:
///
/// - Each request's callback is called exactly once, whatever happens, with a response or a transport failure.
/// - Any status that the service sends is a response, a 404 as well as a 200. Where there is none, the callback gets
///   `HTTPResponse::transportFailure` with the kind of the failure and a reason of one line.
/// - An exception that leaves `queueRequest` or `whenAllRequests` means that nothing was sent and no callback will be
///   called; it passes through the library to its caller. A callback may throw too: what the application's own callback
///   throws comes out of it, and must not keep the client from calling others.
/// - The operations may be called from several threads at once, and from callbacks, so hold no lock while a callback
///   runs.
/// - For `AuthType::BEARER` it adds the user's token, and sends that, and any other credential, only over https or to
///   this machine, and never to another host than the URL's, on redirects either. It checks URLs and headers, which the
///   library hands on unchecked: control characters are refused, since they could make two requests of one. It verifies
///   certificates, limits the time and size of responses, and reports a response that was cut short as a failure.
class QXBASE10_EXPORT IHTTPClient {
public:
    using BatchCallback = std::function<void(std::vector<HTTPResponse> responses)>;

    /// Sends the request and calls its callback with the response, in the thread that its `executionType` asks for. It
    /// takes what it needs of `request` during the call: the caller destroys the object on return.
    virtual void queueRequest(HTTPRequest& request) = 0;

    /// Sends all the requests, calls the callback of each, and then, once, `callback` with the responses in the order
    /// of the requests, also if there are none. `executionType` replaces that of each request. The caller destroys the
    /// vector on return.
    virtual void whenAllRequests(std::vector<HTTPRequest>& requests, BatchCallback callback,
                                 HTTPRequest::ExecutionType executionType) = 0;

    virtual ~IHTTPClient();
};

} // namespace Qx

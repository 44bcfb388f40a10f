#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"
#include "Base/QxBase10/qxbase10_export.h"

#include <functional>
#include <vector>

namespace Qx {

/// Sends all requests of the library. The application supplies the implementation: a
/// `CurlHTTPClient`, or one of its own on top of its HTTP stack. An implementation must follow
/// these rules:
///
/// - Call the callback of each request exactly once, whatever happens, with a response or a
///   transport failure.
/// - Any status that the service sends is a response, a 404 as well as a 200. If there is no
///   response, pass `HTTPResponse::transportFailure` with the kind of failure and a one-line
///   reason.
/// - Let an exception leave `queueRequest` or `whenAllRequests` only if nothing was sent and no
///   callback will be called; it propagates through the library to its caller. Callbacks may throw
///   too, since exceptions from the application's own callback propagate through them; this must
///   not keep the client from calling the other callbacks.
/// - The operations may be called from several threads at once, and from callbacks, so hold no lock
///   while a callback runs.
/// - For `AuthType::BEARER`, add the user's token. Send it, and any other credential, only over
///   https or to this machine, and never to a host other than the URL's, not even on a redirect.
/// - Check URLs and headers, which the library passes on unchecked, and refuse control characters,
///   which could split one request into two. Verify certificates, limit the time and size of
///   responses, and report a truncated response as a failure.
class QXBASE10_EXPORT IHTTPClient {
public:
    /// Receives the responses to a batch of requests, in their order.
    using BatchCallback = std::function<void(std::vector<HTTPResponse> responses)>;

    /// Sends the request and calls its callback with the response, in the thread that its
    /// `executionType` selects. `request` is valid only during the call: copy or move what is
    /// needed later.
    virtual void queueRequest(HTTPRequest& request) = 0;

    /// Sends all requests, calls the callback of each, and then calls `callback` once with the
    /// responses, in the order of the requests, even if `requests` is empty. `executionType`
    /// overrides that of each request. `requests` is valid only during the call.
    virtual void whenAllRequests(std::vector<HTTPRequest>& requests, BatchCallback callback,
                                 HTTPRequest::ExecutionType executionType) = 0;

    virtual ~IHTTPClient();
};

} // namespace Qx

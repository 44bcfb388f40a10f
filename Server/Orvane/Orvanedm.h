#pragma once

#include "Server/Orvane/qxorvanedm10_export.h"

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Orvane {
class FolderContentLink;
namespace Payloads {
class FullAssemblyData;
}
} // namespace Orvane

namespace Qx {

class HTTPRequest;
class HTTPResponse;
class IHTTPClient;
class JSONNode;

/// The client of the Orvane service. Each request operation creates one request, passes it to the
/// `IHTTPClient` and returns; the outcome is reported only through the callback.
///
/// A callback runs once for each response, in the thread in which the `IHTTPClient` delivers it,
/// even if this client has been destroyed by then. If `success` is false, the reason is not
/// reported: the service refused, there was no answer, its body was not JSON (an empty one is not),
/// or there was too little memory to parse it. A callback must not be empty; exceptions from it
/// propagate to the `IHTTPClient`.
///
/// The client has no threads, locks, time-outs, retries or cancellation of its own. Its operations
/// may be called from several threads at once, except `setAsync` and assignment, which need
/// exclusive access. Copies share the `IHTTPClient`, but each has its own `setAsync` setting.
class QXORVANEDM10_EXPORT Orvanedm {
public:
    /// Pairs of key and value, to be encoded and added to a URL's query in this order.
    using QueryVariables = std::list<std::pair<std::string, std::string>>;

    /// `contents` is the answer, or an empty object if `success` is false. It is valid only during
    /// the call; copy it to keep it.
    using FolderContentsCallback = std::function<void(bool success, const JSONNode& contents)>;

    /// `responses` are the raw answers, in the order of the requests.
    using BatchCallback = std::function<void(std::vector<HTTPResponse> responses)>;

    /// `data` is a `FullAssemblyDataV3`, or null if `success` is false. A copy of the pointer keeps
    /// the document alive. `success` is true for any JSON; if the answer is not the assembly of the
    /// requested version, its `getId` differs.
    using FullAssemblyStatusCallback =
        std::function<void(bool success, const std::shared_ptr<::Orvane::Payloads::FullAssemblyData>& data)>;

    /// `data` is default-constructed if `success` is false. It is valid only during the call.
    using FullAssemblyAccessCallback =
        std::function<void(bool success, const ::Orvane::Payloads::FullAssemblyData& data)>;

    /// `httpClient` sends the requests and must not be null. `optionsName` names the options set
    /// that holds the base URIs of the full assembly operations; it may be empty. By default,
    /// requests are answered in the calling thread; see `setAsync`.
    Orvanedm(std::shared_ptr<IHTTPClient> httpClient, const std::string& optionsName);
    /// Shares the `IHTTPClient` with `other`.
    Orvanedm(const Orvanedm& other);
    /// Shares the `IHTTPClient` with `other`, which is not affected otherwise.
    Orvanedm& operator=(const Orvanedm& other);

    /// Neither cancels requests in flight nor waits for them. But if it releases the last reference
    /// to the `IHTTPClient`, that is destroyed too: a `CurlHTTPClient` then fails its requests.
    virtual ~Orvanedm();

    /// Sets whether requests created from now on are answered on a thread of the `IHTTPClient`
    /// (true) or in the calling thread (false).
    void setAsync(bool async);

    /// Returns the current value of the option "orvaneServiceUrl" in the options set that
    /// `ICloudBrowser` names; empty if it is not set. Paths, which begin with "/", are appended to
    /// it directly.
    static std::string baseOrvanedmUri();

    /// The same in the options set `optionsName`.
    static std::string baseOrvanedmUri(const std::string& optionsName);

    /// The same for the option "orvaneV3ServiceUrl".
    static std::string baseOrvanedmUri_V3();

    /// The same in the options set `optionsName`.
    static std::string baseOrvanedmUri_V3(const std::string& optionsName);

    /// Fills in `request`, which must be newly created, to list the contents of a folder. Does not
    /// send it.
    void buildOrvaneFolderContentsRequest(const ::Orvane::FolderContentLink& link, const QueryVariables& queryVariables,
                                          FolderContentsCallback callback, HTTPRequest& request);

    /// Lists the contents of a folder.
    void getFolderContents(const ::Orvane::FolderContentLink& link, const QueryVariables& queryVariables,
                           FolderContentsCallback callback);

    /// Sends a request that `buildOrvaneFolderContentsRequest` has filled in, as it is: `setAsync`
    /// no longer affects it.
    void getFolderContents(HTTPRequest request);

    /// Sends several such requests together, to be answered on a thread of the `IHTTPClient`
    /// regardless of `setAsync`. Each request's own callback runs as usual, and `callback` runs
    /// once, after all of them.
    void getFolderContents(std::vector<HTTPRequest> requests, BatchCallback callback);

    /// Fetches the full assembly of a file version. The URN is percent-encoded; `algorithm`, such
    /// as "ACTUAL", is sent as it is. The base URI is that of `baseOrvanedmUri_V3`; if
    /// `Utility::indirectXRefProjectDetailsEnabled` is on, the request also asks for indirect
    /// references. On success, after `callback` has returned, a usage event that names `workflow`
    /// is tracked in the same thread.
    void getFullAssemblyStatus(const std::string& versionUrn, FullAssemblyStatusCallback callback,
                               const std::string& algorithm, std::wstring workflow);

    /// The same as `getFullAssemblyStatus`, which uses the V3 service.
    void getFullAssemblyStatus_V3(const std::string& versionUrn, FullAssemblyStatusCallback callback,
                                  const std::string& algorithm, std::wstring workflow);

    /// Requests access to the full assembly of a file version, at the base URI of
    /// `baseOrvanedmUri`. `algorithm`, such as "LATEST", is sent as it is. No usage event is
    /// tracked.
    void requestFullAssemblyAccess(const std::string& versionUrn, FullAssemblyAccessCallback callback,
                                   const std::string& algorithm);

private:
    std::shared_ptr<IHTTPClient> httpClient_;
    bool async_ = false;
    std::string optionsName_;
};

} // namespace Qx

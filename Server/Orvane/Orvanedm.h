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

/// The client of the Orvane service. Each request operation forms one request, hands it to the `IHTTPClient`
/// and returns; the outcome reaches the caller through its callback alone.
///
/// A callback runs once for each response, in the thread in which the `IHTTPClient` delivers it, even if this
/// client is gone by then. `success` false carries no reason: the service refused, there was no answer, or
/// its body, an empty one included, was not JSON, or too little memory was left to parse it. A callback must not be
/// empty; what it throws passes to the `IHTTPClient`.
///
/// The client has no thread, lock, time-out, retry or cancellation of its own. Its operations may be called
/// from several threads at once, except `setAsync` and assignment, which need exclusive access.
/// Copies share the `IHTTPClient`, but each has its own `setAsync`.
class QXORVANEDM10_EXPORT Orvanedm {
public:
    /// Pairs of key and value, added to a URL's query in their order and encoded.
    using QueryVariables = std::list<std::pair<std::string, std::string>>;

    /// `contents` is the answer, or an empty object if `success` is false. It lives only during the call; a
    /// copy of it may be kept.
    using FolderContentsCallback = std::function<void(bool success, const JSONNode& contents)>;

    /// `responses` are the raw answers, in the order of the requests.
    using BatchCallback = std::function<void(std::vector<HTTPResponse> responses)>;

    /// `data` is a `FullAssemblyDataV3`, or empty if `success` is false. A copy of the pointer keeps the
    /// document. Any JSON is a success: what is no assembly of the version that was asked for has another `getId`.
    using FullAssemblyStatusCallback =
        std::function<void(bool success, const std::shared_ptr<::Orvane::Payloads::FullAssemblyData>& data)>;

    /// `data` is default-constructed if `success` is false. It lives only during the call.
    using FullAssemblyAccessCallback =
        std::function<void(bool success, const ::Orvane::Payloads::FullAssemblyData& data)>;

    /// `httpClient` sends the requests and must not be null. `optionsName` names the options set that holds
    /// the base URIs of the full assembly operations; it may be empty. At first requests are formed for the
    /// calling thread.
    Orvanedm(std::shared_ptr<IHTTPClient> httpClient, const std::string& optionsName);
    Orvanedm(const Orvanedm& other);
    Orvanedm& operator=(const Orvanedm& other);

    /// Neither cancels nor waits for requests in flight.
    virtual ~Orvanedm();

    /// Whether requests formed from now on are answered on a thread of the `IHTTPClient` or in the calling
    /// thread.
    void setAsync(bool async);

    /// The option "orvaneServiceUrl" of the options set `optionsName`, or of the one that `ICloudBrowser` names, read
    /// now and unchanged; empty if it is not set. Paths, which begin with "/", are appended to it directly.
    static std::string baseOrvanedmUri();
    static std::string baseOrvanedmUri(const std::string& optionsName);

    /// The same for the option "orvaneV3ServiceUrl".
    static std::string baseOrvanedmUri_V3();
    static std::string baseOrvanedmUri_V3(const std::string& optionsName);

    /// Fills in a fresh `request` to list the contents of a folder, and sends nothing.
    void buildOrvaneFolderContentsRequest(const ::Orvane::FolderContentLink& link, const QueryVariables& queryVariables,
                                          FolderContentsCallback callback, HTTPRequest& request);

    /// Lists the contents of a folder.
    void getFolderContents(const ::Orvane::FolderContentLink& link, const QueryVariables& queryVariables,
                           FolderContentsCallback callback);

    /// Sends a request that `buildOrvaneFolderContentsRequest` has filled in, as it is: `setAsync` plays no
    /// part any more.
    void getFolderContents(HTTPRequest request);

    /// Sends several such requests at once, answered on a thread of the `IHTTPClient` whatever `setAsync`
    /// says. Each request's own callback runs as always, and `callback` once for all.
    void getFolderContents(std::vector<HTTPRequest> requests, BatchCallback callback);

    /// Fetches the full assembly of a file version. The URN is encoded as a whole; `algorithm`, such as
    /// "ACTUAL", goes out as it is. The base URI is that of `baseOrvanedmUri_V3`; while
    /// `Utility::indirectXRefProjectDetailsEnabled` the service is asked for indirect references too. When a
    /// `callback` that was told of success has returned, a usage event that names `workflow` is tracked in the same
    /// thread.
    void getFullAssemblyStatus(const std::string& versionUrn, FullAssemblyStatusCallback callback,
                               const std::string& algorithm, std::wstring workflow);

    /// The same by its generation's name.
    void getFullAssemblyStatus_V3(const std::string& versionUrn, FullAssemblyStatusCallback callback,
                                  const std::string& algorithm, std::wstring workflow);

    /// Asks for access to the full assembly of a file version, at the base URI of the first generation.
    /// `algorithm`, such as "LATEST", goes out as it is. No usage event is tracked.
    void requestFullAssemblyAccess(const std::string& versionUrn, FullAssemblyAccessCallback callback,
                                   const std::string& algorithm);

private:
    std::shared_ptr<IHTTPClient> httpClient_;
    bool async_ = false;
    std::string optionsName_;
};

} // namespace Qx

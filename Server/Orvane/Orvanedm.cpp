#include "Server/Orvane/Orvanedm.h"

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"
#include "Base/QxBase10/HTTPUtils.h"
#include "Base/QxBase10/IHTTPClient.h"
#include "Base/QxBaseCore10/ApplicationOptions.h"
#include "Base/QxBaseCore10/CloudBrowser.h"
#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Status.h"
#include "Base/QxBaseCore10/Strings.h"
#include "Base/QxBaseCore10/Uri.h"
#include "Base/QxBaseCore10/Utility.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Payloads/FullAssemblyData.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <boost/assert/source_location.hpp>
#include <boost/current_function.hpp>

namespace Qx {

namespace {

using ::Orvane::FolderContentLink;
using ::Orvane::Payloads::FullAssemblyData;
using ::Orvane::Payloads::FullAssemblyDataV3;

// Returns the location of the calling statement, with the full signature of its function: with
// Clang, the compiler's own location holds only the function's name.
constexpr boost::source_location locationIn(const char* signature,
                                            const boost::source_location& statement = BOOST_CURRENT_LOCATION) {
    return {statement.file_name(), statement.line(), signature, statement.column()};
}

std::string readBaseUri(const std::string& optionsName, const wchar_t* key) {
    std::wstring uri;
    ApplicationOptions::get(optionsName)->tryGet(key, uri);
    return ToHString(uri);
}

// Fills in a request; all requests of the client go through this.
void fillRequest(HTTPRequest& request, std::string url, HTTPRequest::Method method, bool async,
                 const HTTPRequest::Callback& completion, const char* threadName) {
    request.setURL(std::move(url));
    request.setAuthType(HTTPRequest::AuthType::BEARER);
    request.setHeader("Content-Type", "application/json");
    request.setHeader("Accept", "application/json");
    request.setMethod(method);
    request.executionType =
        async ? HTTPRequest::ExecutionType::CLIENT_THREAD : HTTPRequest::ExecutionType::CALLING_THREAD;
    request.setCallback(completion);
    request.setThreadName(threadName);
}

// Handles a response; the completions of all requests call this.
void handleJSONResponse(HTTPResponse response, Orvanedm::FolderContentsCallback callback) {
    JSONNode node("{}");
    if (!response.isSuccessful()) {
        callback(false, node);
        return;
    }
    // The callback gets no reason for a failure, so the status is dropped here.
    Status status;
    const bool success = HTTPUtils::extractJSON(status, response, node);
    callback(success, node);
}

std::string fullAssemblyUrl(const std::string& baseUri, const std::string& versionUrn, const char* path,
                            const std::string& algorithm) {
    return baseUri + "/versions/" + Uri::UriEncode(versionUrn) + path + "?algorithm=" + algorithm;
}

const char* includeText() {
    return Utility::indirectXRefProjectDetailsEnabled() ? "&include=folders,allowed-actions,indirectXRefs"
                                                        : "&include=folders,allowed-actions";
}

void deliverFullAssembly(bool success, const JSONNode& root, const Orvanedm::FullAssemblyStatusCallback& callback,
                         const std::wstring& workflow) {
    if (!success) {
        callback(false, nullptr);
        return;
    }
    const std::shared_ptr<FullAssemblyData> document = std::make_shared<FullAssemblyDataV3>(root);
    callback(true, document);
    document->sendFullAssemblyAnalytics(workflow);
}

void deliverFullAssemblyAccess(bool success, const JSONNode& root,
                               const Orvanedm::FullAssemblyAccessCallback& callback) {
    callback(success, success ? FullAssemblyData(root) : FullAssemblyData());
}

} // namespace

Orvanedm::Orvanedm(std::shared_ptr<IHTTPClient> httpClient, const std::string& optionsName)
    : httpClient_(std::move(httpClient)), optionsName_(optionsName) {}

Orvanedm::Orvanedm(const Orvanedm& other) = default;

Orvanedm& Orvanedm::operator=(const Orvanedm& other) = default;

Orvanedm::~Orvanedm() = default;

void Orvanedm::setAsync(bool async) {
    async_ = async;
}

std::string Orvanedm::baseOrvanedmUri() {
    return baseOrvanedmUri(ICloudBrowser::get()->currentOptionsName());
}

std::string Orvanedm::baseOrvanedmUri(const std::string& optionsName) {
    return readBaseUri(optionsName, L"orvaneServiceUrl");
}

std::string Orvanedm::baseOrvanedmUri_V3() {
    return baseOrvanedmUri_V3(ICloudBrowser::get()->currentOptionsName());
}

std::string Orvanedm::baseOrvanedmUri_V3(const std::string& optionsName) {
    return readBaseUri(optionsName, L"orvaneV3ServiceUrl");
}

void Orvanedm::buildOrvaneFolderContentsRequest(const FolderContentLink& link, const QueryVariables& queryVariables,
                                                FolderContentsCallback callback, HTTPRequest& request) {
    Uri uri = link.href();
    for (const auto& [key, value] : queryVariables)
        uri.SetQueryVariable(key, value);
    fillRequest(
        request, uri.ToString(true), HTTPRequest::Method::GET, async_,
        [callback = std::move(callback)](const HTTPResponse& response) { handleJSONResponse(response, callback); },
        "Orvanedm::getFolderContents");
}

void Orvanedm::getFolderContents(const FolderContentLink& link, const QueryVariables& queryVariables,
                                 FolderContentsCallback callback) {
    HTTPRequest request(locationIn(BOOST_CURRENT_FUNCTION));
    buildOrvaneFolderContentsRequest(link, queryVariables, std::move(callback), request);
    getFolderContents(std::move(request));
}

void Orvanedm::getFolderContents(HTTPRequest request) {
    httpClient_->queueRequest(request);
}

void Orvanedm::getFolderContents(std::vector<HTTPRequest> requests, BatchCallback callback) {
    httpClient_->whenAllRequests(requests, std::move(callback), HTTPRequest::ExecutionType::CLIENT_THREAD);
}

void Orvanedm::getFullAssemblyStatus(const std::string& versionUrn, FullAssemblyStatusCallback callback,
                                     const std::string& algorithm, std::wstring workflow) {
    getFullAssemblyStatus_V3(versionUrn, std::move(callback), algorithm, std::move(workflow));
}

void Orvanedm::getFullAssemblyStatus_V3(const std::string& versionUrn, FullAssemblyStatusCallback callback,
                                        const std::string& algorithm, std::wstring workflow) {
    const char* include = includeText();
    std::string url = fullAssemblyUrl(baseOrvanedmUri_V3(optionsName_), versionUrn, "/fullassembly", algorithm);
    url += include;
    HTTPRequest request(locationIn(BOOST_CURRENT_FUNCTION));
    fillRequest(
        request, std::move(url), HTTPRequest::Method::GET, async_,
        [callback = std::move(callback), workflow = std::move(workflow)](const HTTPResponse& response) {
            handleJSONResponse(response, [callback, workflow](bool success, const JSONNode& root) {
                deliverFullAssembly(success, root, callback, workflow);
            });
        },
        "Orvanedm::getFullAssemblyStatus_V3");
    httpClient_->queueRequest(request);
}

void Orvanedm::requestFullAssemblyAccess(const std::string& versionUrn, FullAssemblyAccessCallback callback,
                                         const std::string& algorithm) {
    std::string url = fullAssemblyUrl(baseOrvanedmUri(optionsName_), versionUrn, "/fullassembly/access", algorithm);
    HTTPRequest request(locationIn(BOOST_CURRENT_FUNCTION));
    fillRequest(
        request, std::move(url), HTTPRequest::Method::POST, async_,
        [callback = std::move(callback)](const HTTPResponse& response) {
            handleJSONResponse(response, [callback](bool success, const JSONNode& root) {
                deliverFullAssemblyAccess(success, root, callback);
            });
        },
        "Orvanedm::requestFullAssemblyAccess");
    httpClient_->queueRequest(request);
}

} // namespace Qx

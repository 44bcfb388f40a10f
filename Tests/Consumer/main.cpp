// A project of its own, which knows only what is installed: it lists a folder and fetches a full assembly
// through its own HTTP client, and checks what it gets.

#include "AllHeaders.h"

#include <cstdio>
#include <memory>

namespace {

class CannedHTTPClient : public Qx::IHTTPClient {
public:
    void queueRequest(Qx::HTTPRequest& request) override {
        request.getCallback()(
            Qx::HTTPResponse(200, R"({"results":"yes","included":{"folders":[{"id":"f","type":"folders"}]}})"));
    }

    void whenAllRequests(std::vector<Qx::HTTPRequest>&, BatchCallback callback,
                         Qx::HTTPRequest::ExecutionType) override {
        callback({});
    }
};

} // namespace

int main() {
    using namespace Orvane::Payloads;
    Qx::ApplicationOptions::get("main")->set(L"orvaneServiceUrl", L"https://orvane.example");
    Qx::Orvanedm orvanedm(std::make_shared<CannedHTTPClient>(), "main");

    bool listed = false;
    orvanedm.getFolderContents(
        Orvane::FolderContentLink::fromUrn("an.urn", "main"), {},
        [&](bool success, const Qx::JSONNode& contents) { listed = success && contents.exists("results"); });
    bool hasFolder = false;
    const auto keep = [&](bool, const std::shared_ptr<FullAssemblyData>& data) {
        const auto assembly = std::dynamic_pointer_cast<FullAssemblyDataV3>(data);
        hasFolder = assembly && assembly->getFolder("f");
    };
    orvanedm.getFullAssemblyStatus("v", keep, "ACTUAL", L"consume");
    std::printf("listed %d, downcast %d\n", listed, hasFolder);
    return listed && hasFolder ? 0 : 1;
}

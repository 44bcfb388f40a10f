#include "Server/Orvane/FolderContentLink.h"

#include "Base/QxBase10/FlagsManager.h"
#include "Server/Orvane/Orvanedm.h"

#include <utility>

namespace Orvane {

FolderContentLink::FolderContentLink(std::string contentLink) : contentLink_(std::move(contentLink)) {}

FolderContentLink FolderContentLink::fromContentLink(const std::string& link) {
    return FolderContentLink(link);
}

FolderContentLink FolderContentLink::fromUrn(const std::string& urn, const std::string& optionsName) {
    return fromBaseUri(Qx::Orvanedm::baseOrvanedmUri(optionsName), urn);
}

FolderContentLink FolderContentLink::fromUrn(const std::string& urn) {
    return fromBaseUri(Qx::Orvanedm::baseOrvanedmUri(), urn);
}

FolderContentLink FolderContentLink::fromBaseUri(const std::string& baseUri, const std::string& urn) {
    std::string link = baseUri + "/folders/" + urn + "/content";
    if (Qx::FlagsManager::get().isFlagEnabled("data-show-non-cad-components", true, 0))
        link += "?storageType=BINARY,REFERENCE";
    return FolderContentLink(std::move(link));
}

Qx::Uri FolderContentLink::href() const {
    return Qx::Uri(contentLink_);
}

bool FolderContentLink::isOrvaneFolderContentLink(const std::string& link) {
    const auto contains = [&](const char* text) { return link.find(text) != std::string::npos; };
    return contains("orvanedm") && contains("/content");
}

} // namespace Orvane

#pragma once

#include "Base/QxBaseCore10/Uri.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <string>

namespace Orvane {

/// The URL at which the service lists a folder's contents. A plain value; may be read from several
/// threads at once. No operation validates its input: only the service's answer shows whether a
/// link is valid.
class QXORVANEDM10_EXPORT FolderContentLink {
public:
    /// Uses `link` as it is, whatever it contains.
    static FolderContentLink fromContentLink(const std::string& link);

    /// The contents of the folder `urn` at `Qx::Orvanedm::baseOrvanedmUri(optionsName)`. The URN is
    /// inserted into the path as it is, without encoding. If the flag
    /// "data-show-non-cad-components" is on, the link also requests binary files and references.
    /// The option and the flag are read by this call; later changes do not affect the link.
    static FolderContentLink fromUrn(const std::string& urn, const std::string& optionsName);

    /// The same with the current options set, which `Qx::ICloudBrowser` names.
    static FolderContentLink fromUrn(const std::string& urn);

    /// Returns a copy of the whole URL.
    Qx::Uri href() const;

    /// Returns true if `link` contains both "orvanedm" and "/content", anywhere and in either
    /// order.
    static bool isOrvaneFolderContentLink(const std::string& link);

private:
    explicit FolderContentLink(std::string contentLink);

    static FolderContentLink fromBaseUri(const std::string& baseUri, const std::string& urn);

    std::string contentLink_;
};

} // namespace Orvane

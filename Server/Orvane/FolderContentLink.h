#pragma once

#include "Base/QxBaseCore10/Uri.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <string>

namespace Orvane {

/// The URL at which the service lists a folder's contents. A plain value; may be read from several
/// threads at once. No operation tests its input: what the service makes of a link shows in its answer.
class QXORVANEDM10_EXPORT FolderContentLink {
public:
    /// The text as it is, whatever it holds.
    static FolderContentLink fromContentLink(const std::string& link);

    /// The contents of the folder `urn` at `Qx::Orvanedm::baseOrvanedmUri(optionsName)`. The URN goes into
    /// the path as it is, with no encoding. While the flag "data-show-non-cad-components" is on the link asks
    /// for binary files and references too. Option and flag are read now; the link keeps what it got.
    static FolderContentLink fromUrn(const std::string& urn, const std::string& optionsName);

    /// The same with the current options set, as `Qx::ICloudBrowser` names it.
    static FolderContentLink fromUrn(const std::string& urn);

    /// The whole URL. A change to the result leaves the link alone.
    Qx::Uri href() const;

    /// True if the text holds both "orvanedm" and "/content", anywhere and in either order.
    static bool isOrvaneFolderContentLink(const std::string& link);

private:
    explicit FolderContentLink(std::string contentLink);

    static FolderContentLink fromBaseUri(const std::string& baseUri, const std::string& urn);

    std::string contentLink_;
};

} // namespace Orvane

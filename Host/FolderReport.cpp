#include "Host/FolderReport.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Host/Printable.h"

#include <boost/json/serialize.hpp>
#include <fmt/format.h>

namespace OrvaneHost {

std::string folderText(const std::string& urn, const Qx::JSONNode& contents) {
    return fmt::format("Contents of {}\n  {}\n", urn, printable(contents.toText()));
}

std::string folderJSON(const std::string& urn, const Qx::JSONNode& contents) {
    return fmt::format("{{\"urn\":{},\"contents\":{}}}\n", boost::json::serialize(boost::json::string(urn)),
                       contents.toText());
}

} // namespace OrvaneHost

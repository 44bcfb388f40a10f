#include "Host/FolderReport.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Strings.h"
#include "Host/Console.h"
#include "Host/Printable.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Payloads/FilesData.h"
#include "Server/Orvane/Payloads/FolderData.h"

#include <boost/json/serialize.hpp>
#include <fmt/format.h>

namespace OrvaneHost {

namespace {

Report::Table emptyTable(const char* key, const char* title) {
    return {key, title, {{"name", "name"}, {"id", "id"}}, {}};
}

Report::Table listFolders(const Qx::JSONNode& included) {
    Report::Table table = emptyTable("folders", "Folders");
    for (const Qx::JSONRef& element : Qx::JSONNode(included["folders"])) {
        const Orvane::Payloads::FolderData folder{Qx::JSONNode(element)};
        table.rows.push_back({folder.name(), folder.getId()});
    }
    return table;
}

Report::Table listFiles(const Qx::JSONNode& included) {
    Report::Table table = emptyTable("files", "Files");
    for (const Qx::JSONRef& element : Qx::JSONNode(included["files"])) {
        const Orvane::Payloads::FilesData file{Qx::JSONNode(element)};
        table.rows.push_back({Qx::ToHString(file.getName()), file.getId()});
    }
    return table;
}

} // namespace

bool holdsFolder(const std::string& urnOrLink, const Qx::JSONNode& contents, std::string_view body) {
    const Qx::JSONNode errors(contents["errors"]);
    const std::string id = Qx::JSONNode(contents["data"])["id"].asHString(urnOrLink);
    const bool isOfFolder = id == urnOrLink || Orvane::FolderContentLink::isOrvaneFolderContentLink(urnOrLink);
    const std::size_t start = body.find_first_of("{[\"-0123456789tfn");
    return start != std::string_view::npos && body[start] == '{' && !(errors.begin() != errors.end()) && isOfFolder;
}

void printFolder(const std::string& urn, const Qx::JSONNode& contents, bool isWide) {
    const Qx::JSONNode included(contents["included"]);
    if (!included.exists("folders") && !included.exists("files")) {
        printOutput(fmt::format("Contents of {}\n  {}\n", printable(urn), printable(contents.toText())));
        return;
    }
    const std::string name = Qx::JSONNode(contents["data"])["name"].asHString("");
    Report report{"Contents of " + (name.empty() ? urn : name), {}, {listFolders(included), listFiles(included)}};
    report.facts = {{"id", "folder", urn}};
    printText(report, isWide);
}

std::string folderJSON(const std::string& urn, const Qx::JSONNode& contents) {
    return escapeDeceptive(fmt::format("{{\"urn\":{},\"contents\":{}}}\n",
                                       boost::json::serialize(boost::json::string(urn)), contents.toText()));
}

} // namespace OrvaneHost

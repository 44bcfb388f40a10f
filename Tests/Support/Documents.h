#pragma once

#include "Base/QxBaseCore10/Strings.h"
#include "Tests/Support/Json.h"

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

/// A V3 body with named parts; the lists are the elements of JSON arrays. As it is: version 3 of file A, in a folder,
/// refers to version 1 of file B, in a project.
struct DocumentParts {
    std::string id = "urn:vrnk.dorlqa:fs.file:A?version=3";
    std::string counts = R"("inaccessibleProjects":0,"restrictedProjects":0)";
    std::string relationships = R"({"id":"r","type":"relationships","relationshipType":"XREF",
        "fromUrn":{"id":"urn:vrnk.dorlqa:fs.file:A?version=3"},"toUrn":{"id":"urn:vrnk.dorlqa:fs.file:B?version=1"}})";
    std::string versions = R"({"id":"urn:vrnk.dorlqa:fs.file:A?version=3","type":"versions","title":"A v3",
                               "file":{"id":"urn:vrnk.dorlqa:dm.lineage:A"}},
                              {"id":"urn:vrnk.dorlqa:fs.file:B?version=1","type":"versions","title":"B v1",
                               "name":"B","file":{"id":"urn:vrnk.dorlqa:dm.lineage:B"}})";
    std::string files = R"({"id":"urn:vrnk.dorlqa:dm.lineage:A","type":"files","name":"A",
                            "parent":{"type":"folders","id":"urn:vrnk.dorlqa:fs.folder:folderA"}},
                           {"id":"urn:vrnk.dorlqa:dm.lineage:B","type":"files","name":"B",
                            "parent":{"type":"projects"},"project":{"id":"1234567890123456"}})";
    std::string projects = R"({"id":"1234567890123456","type":"projects","name":"Closed Project Project-Name",
                               "status":"Active","communityType":"OPEN",
                               "me":{"isMember":"true","role":"PROJECT_ADMIN","membership":"M"}})";
    std::string folders = R"({"id":"urn:vrnk.dorlqa:fs.folder:folderA","type":"folders","name":"folder name",
                              "status":"Active","containerType":"FOLDER","me":{"allowed-actions":["read"]}})";

    Qx::JSONNode root() const {
        return json(R"({"data":{"id":")" + id + R"(","type":"versions","links":{"self":"/v"},)" + counts +
                    R"(,"relationships":[)" + relationships + R"(]},"included":{"versions":[)" + versions +
                    R"(],"files":[)" + files + R"(],"projects":[)" + projects + R"(],"folders":[)" + folders + "]}}");
    }
};

/// The entries in the order of their keys, as "key=text;".
inline std::string listed(const std::unordered_map<std::string, std::wstring>& map) {
    std::string text;
    for (const auto& [key, value] : std::map<std::string, std::wstring>(map.begin(), map.end()))
        text += key + '=' + Qx::ToHString(value) + ';';
    return text;
}

/// The entries in their own order, as "entry;".
inline std::string listed(const std::vector<std::wstring>& list) {
    std::string text;
    for (const std::wstring& entry : list)
        text += Qx::ToHString(entry) + ';';
    return text;
}

#pragma once

#include "Tests/Support/Json.h"

#include <string>

/// A V3 body with named parts, each the text of a JSON array. As it is: version 3 of file A, in a folder,
/// refers to version 1 of file B, in a project.
struct DocumentParts {
    std::string id = "urn:vrnk.dorlqa:fs.file:A?version=3";
    std::string counts = R"("inaccessibleProjects":0,"restrictedProjects":0)";
    std::string relationships = R"([{"id":"r","type":"relationships","relationshipType":"XREF",
        "fromUrn":{"id":"urn:vrnk.dorlqa:fs.file:A?version=3"},"toUrn":{"id":"urn:vrnk.dorlqa:fs.file:B?version=1"}}])";
    std::string versions = R"([{"id":"urn:vrnk.dorlqa:fs.file:A?version=3","type":"versions","title":"A v3",
                                "file":{"id":"urn:vrnk.dorlqa:dm.lineage:A"}},
                               {"id":"urn:vrnk.dorlqa:fs.file:B?version=1","type":"versions","title":"B v1",
                                "name":"B","file":{"id":"urn:vrnk.dorlqa:dm.lineage:B"}}])";
    std::string files = R"([{"id":"urn:vrnk.dorlqa:dm.lineage:A","type":"files","name":"A",
                             "parent":{"type":"folders","id":"urn:vrnk.dorlqa:fs.folder:folderA"}},
                            {"id":"urn:vrnk.dorlqa:dm.lineage:B","type":"files","name":"B",
                             "parent":{"type":"projects"},"project":{"id":"1234567890123456"}}])";
    std::string projects =
        R"([{"id":"1234567890123456","type":"projects","name":"Closed Project Project-Name",
                                "status":"Active","communityType":"OPEN",
                                "me":{"isMember":"true","role":"PROJECT_ADMIN","membership":"M"}}])";
    std::string folders = R"([{"id":"urn:vrnk.dorlqa:fs.folder:folderA","type":"folders","name":"folder name",
                               "status":"Active","containerType":"FOLDER","me":{"allowed-actions":["read"]}}])";

    Qx::JSONNode root() const {
        return json(R"({"data":{"id":")" + id + R"(","type":"versions","links":{"self":"/v"},)" + counts +
                    R"(,"relationships":)" + relationships + R"(},"included":{"versions":)" + versions +
                    R"(,"files":)" + files + R"(,"projects":)" + projects + R"(,"folders":)" + folders + "}}");
    }
};

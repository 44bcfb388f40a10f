#include "Base/QxBaseCore10/Strings.h"
#include "Benchmarks/PlainRules.h"
#include "Benchmarks/Readers.h"

#include <nlohmann/json.hpp>

namespace OrvaneBenchmarks {

namespace {

using Json = nlohmann::json;

const Json& under(const Json& object, const char* key) {
    static const Json null;
    const auto found = object.find(key);
    return found == object.end() ? null : *found;
}

const std::string& text(const Json& value) {
    static const std::string empty;
    const auto* found = value.get_ptr<const std::string*>();
    return found ? *found : empty;
}

const std::string& textUnder(const Json& object, const char* key) {
    return text(under(object, key));
}

PlainFile readFile(const Json& object) {
    PlainFile file;
    file.id = textUnder(object, "id");
    file.type = textUnder(object, "type");
    file.name = Qx::ToIString(textUnder(object, "name"));
    const Json& parent = under(object, "parent");
    file.parentType = containerTypeOf(textUnder(parent, "type"));
    file.parentId = textUnder(file.parentType == ContainerType::PROJECT ? under(object, "project") : parent, "id");
    const Json& attributes = under(object, "attributes");
    file.subTypes = textUnder(under(attributes, "subTypes"), "value");
    if (file.subTypes == "Configuration")
        file.parentId = textUnder(under(attributes, "configuredDesignProjectId"), "value");
    return file;
}

PlainProject readProject(const Json& object) {
    const Json& me = under(object, "me");
    return {.id = textUnder(object, "id"),
            .type = textUnder(object, "type"),
            .href = textUnder(under(object, "links"), "self"),
            .name = Qx::ToIString(textUnder(object, "name")),
            .parent = textUnder(object, "parent"),
            .visible = under(object, "visible").get<bool>(),
            .status = containerStatusOf(textUnder(object, "status")),
            .membership = textUnder(me, "membership"),
            .isMember = textUnder(me, "isMember"),
            .role = textUnder(me, "role"),
            .communityType = textUnder(object, "communityType")};
}

PlainVersion readVersion(const Json& object) {
    return {.id = textUnder(object, "id"),
            .type = textUnder(object, "type"),
            .name = textUnder(object, "name"),
            .fileId = textUnder(under(object, "file"), "id"),
            .title = textUnder(object, "title")};
}

PlainRelationship readRelationship(const Json& object) {
    return {.id = textUnder(object, "id"),
            .type = textUnder(object, "type"),
            .href = textUnder(object, "self"),
            .fromUrn = textUnder(under(object, "fromUrn"), "id"),
            .toUrn = textUnder(under(object, "toUrn"), "id"),
            .sourceFromUrn = textUnder(under(object, "sourceFromUrn"), "id"),
            .sourceToUrn = textUnder(under(object, "sourceToUrn"), "id"),
            .relationshipType = relationTypeOf(textUnder(object, "relationshipType"))};
}

PlainFolder readFolder(const Json& object) {
    const Json& me = under(object, "me");
    PlainFolder folder{.id = textUnder(object, "id"),
                       .type = textUnder(object, "type"),
                       .href = textUnder(under(object, "links"), "self"),
                       .name = textUnder(object, "name"),
                       .parent = textUnder(object, "parent"),
                       .visible = under(object, "visible").get<bool>(),
                       .status = containerStatusOf(textUnder(object, "status")),
                       .isMember = under(me, "isMember").get<bool>(),
                       .membership = textUnder(me, "membership"),
                       .allowedActions = {},
                       .containerType = containerTypeOf(textUnder(object, "containerType"))};
    for (const Json& action : under(me, "allowed-actions"))
        folder.allowedActions.insert(text(action));
    return folder;
}

} // namespace

PlainAssembly readWithNlohmann(const Qx::HTTPResponse& response) {
    const Json root = Json::parse(response.getBody());
    const Json& data = under(root, "data");
    const Json& included = under(root, "included");
    PlainAssembly assembly;
    assembly.id = textUnder(data, "id");
    assembly.type = textUnder(data, "type");
    assembly.href = textUnder(under(data, "links"), "self");
    assembly.inaccessibleParents = under(data, "inaccessibleProjects").get<std::int32_t>();
    assembly.restrictedParents = under(data, "restrictedProjects").get<std::int32_t>();
    for (const Json& object : under(included, "projects"))
        assembly.projects.push_back(readProject(object));
    for (const Json& object : under(included, "files"))
        assembly.files.try_emplace(textUnder(object, "id"), readFile(object));
    for (const Json& object : under(included, "versions"))
        assembly.versions[textUnder(object, "id")] = std::make_shared<PlainVersion>(readVersion(object));
    for (const Json& object : under(included, "folders"))
        assembly.folders[textUnder(object, "id")] = std::make_shared<PlainFolder>(readFolder(object));
    for (const Json& object : under(data, "relationships"))
        assembly.relationships.push_back(std::make_shared<PlainRelationship>(readRelationship(object)));
    findDirectReferences(assembly);
    return assembly;
}

} // namespace OrvaneBenchmarks

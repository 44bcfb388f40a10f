#include "Base/QxBaseCore10/Strings.h"
#include "Benchmarks/PlainRules.h"
#include "Benchmarks/Readers.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

namespace OrvaneBenchmarks {

namespace {

using Json = nlohmann::json;

const Json& under(const Json& object, const char* key) {
    static const Json null;
    const auto found = object.find(key);
    return found == object.end() ? null : *found;
}

const Json& elementsUnder(const Json& object, const char* key) {
    static const Json none = Json::array();
    const Json& elements = under(object, key);
    return elements.is_array() ? elements : none;
}

// Converts other scalars to text too, as the library does.
std::string text(const Json& value) {
    if (value.is_string())
        return value.get_ref<const std::string&>();
    if (value.is_boolean() || value.is_number_integer())
        return value.dump();
    std::array<char, 32> buffer{};
    if (value.is_number_float())
        return {buffer.data(), std::to_chars(buffer.begin(), buffer.end(), value.get<double>()).ptr};
    return {};
}

std::string textUnder(const Json& object, const char* key) {
    return text(under(object, key));
}

bool flagUnder(const Json& object, const char* key) {
    const Json& value = under(object, key);
    return value.is_boolean() && value.get<bool>();
}

std::int32_t countUnder(const Json& object, const char* key) {
    const Json& value = under(object, key);
    // A direct comparison would convert a large unsigned number to a negative one.
    const bool isCount = value.is_number_unsigned()
                             ? std::in_range<std::int32_t>(value.get<std::uint64_t>())
                             : value.is_number_integer() && std::in_range<std::int32_t>(value.get<std::int64_t>());
    return isCount ? value.get<std::int32_t>() : 0;
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
    if (const Json& subTypes = under(attributes, "subTypes"); subTypes.contains("value"))
        file.subTypes = textUnder(subTypes, "value");
    const Json& configuredProject = under(attributes, "configuredDesignProjectId");
    if (file.subTypes == configuration && configuredProject.contains("value"))
        file.parentId = textUnder(configuredProject, "value");
    return file;
}

PlainProject readProject(const Json& object) {
    const Json& me = under(object, "me");
    PlainProject project{.id = textUnder(object, "id"),
                         .type = textUnder(object, "type"),
                         .href = textUnder(under(object, "links"), "self"),
                         .name = Qx::ToIString(textUnder(object, "name")),
                         .parent = textUnder(object, "parent"),
                         .visible = flagUnder(object, "visible"),
                         .membership = textUnder(me, "membership"),
                         .isMember = textUnder(me, "isMember"),
                         .role = textUnder(me, "role"),
                         .communityType = textUnder(object, "communityType")};
    if (object.contains("status"))
        project.status = containerStatusOf(textUnder(object, "status"));
    return project;
}

PlainVersion readVersion(const Json& object) {
    PlainVersion version;
    version.id = textUnder(object, "id");
    version.type = textUnder(object, "type");
    if (version.type != "versions")
        return version;
    version.name = textUnder(object, "name");
    version.fileId = textUnder(under(object, "file"), "id");
    version.title = textUnder(object, "title");
    return version;
}

PlainRelationship readRelationship(const Json& object) {
    PlainRelationship relationship;
    relationship.id = textUnder(object, "id");
    relationship.type = textUnder(object, "type");
    relationship.href = textUnder(object, "self");
    if (relationship.type != "relationships")
        return relationship;
    relationship.fromUrn = textUnder(under(object, "fromUrn"), "id");
    relationship.toUrn = textUnder(under(object, "toUrn"), "id");
    relationship.sourceFromUrn = textUnder(under(object, "sourceFromUrn"), "id");
    relationship.sourceToUrn = textUnder(under(object, "sourceToUrn"), "id");
    relationship.relationshipType = relationTypeOf(textUnder(object, "relationshipType"));
    return relationship;
}

PlainFolder readFolder(const Json& object) {
    const Json& me = under(object, "me");
    PlainFolder folder{.id = textUnder(object, "id"),
                       .type = textUnder(object, "type"),
                       .href = textUnder(under(object, "links"), "self"),
                       .name = textUnder(object, "name"),
                       .parent = textUnder(object, "parent"),
                       .visible = flagUnder(object, "visible"),
                       .status = containerStatusOf(textUnder(object, "status")),
                       .isMember = textUnder(me, "isMember") == "true",
                       .membership = textUnder(me, "membership"),
                       .allowedActions = {},
                       .containerType = containerTypeOf(textUnder(object, "containerType"))};
    for (const Json& action : elementsUnder(me, "allowed-actions"))
        folder.allowedActions.insert(text(action));
    return folder;
}

} // namespace

PlainAssembly readAssembly(const Json& root) {
    const Json& data = under(root, "data");
    const Json& included = under(root, "included");
    PlainAssembly assembly;
    assembly.id = textUnder(data, "id");
    assembly.type = textUnder(data, "type");
    assembly.href = textUnder(under(data, "links"), "self");
    assembly.inaccessibleParents = countUnder(data, "inaccessibleProjects");
    assembly.restrictedParents = countUnder(data, "restrictedProjects");
    for (const Json& object : elementsUnder(included, "projects"))
        if (textUnder(object, "type") == "projects")
            assembly.projects.push_back(readProject(object));
    for (const Json& object : elementsUnder(included, "files"))
        if (textUnder(object, "type") == "files")
            assembly.files.try_emplace(textUnder(object, "id"), readFile(object));
    for (const Json& object : elementsUnder(included, "versions"))
        assembly.versions[textUnder(object, "id")] = std::make_shared<PlainVersion>(readVersion(object));
    for (const Json& object : elementsUnder(included, "folders"))
        if (textUnder(object, "type") == "folders")
            assembly.folders[textUnder(object, "id")] = std::make_shared<PlainFolder>(readFolder(object));
    for (const Json& object : elementsUnder(data, "relationships"))
        assembly.relationships.push_back(std::make_shared<PlainRelationship>(readRelationship(object)));
    findDirectReferences(assembly);
    return assembly;
}

PlainAssembly readWithNlohmann(const Qx::HTTPResponse& response) {
    return readAssembly(Json::parse(response.getBody()));
}

} // namespace OrvaneBenchmarks

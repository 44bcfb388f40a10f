#include "Base/QxBaseCore10/Strings.h"
#include "Benchmarks/PlainRules.h"
#include "Benchmarks/Readers.h"

#include <concepts>
#include <simdjson.h>
#include <string_view>

namespace OrvaneBenchmarks {

namespace {

using simdjson::dom::element;

std::string_view text(const element& value) {
    return value.get_string();
}

void assign(const element& value, std::string& destination) {
    destination = text(value);
}

void assign(const element& value, std::wstring& destination) {
    destination = Qx::ToIString(text(value));
}

void assign(const element& value, bool& destination) {
    destination = value.get_bool();
}

void assign(const element& value, std::int32_t& destination) {
    destination = static_cast<std::int32_t>(std::int64_t(value));
}

void assign(const element& value, ContainerStatus& destination) {
    destination = containerStatusOf(text(value));
}

void assign(const element& value, ContainerType& destination) {
    destination = containerTypeOf(text(value));
}

void assign(const element& value, RelationType& destination) {
    destination = relationTypeOf(text(value));
}

void assign(const element& value, const std::invocable<element> auto& read) {
    read(value);
}

template <class Destination, class... Others>
void assignTo(std::string_view key, const element& value, std::string_view wanted, Destination& destination,
              Others&... others) {
    if (key == wanted)
        assign(value, destination);
    else if constexpr (sizeof...(Others) > 0)
        assignTo(key, value, others...);
}

// Reads an object in one pass. Each key is followed by the destination of its value, or by a
// function that reads it.
template <class... KeysAndDestinations>
void readMembers(const element& object, KeysAndDestinations&&... fields) {
    for (const auto member : object.get_object())
        assignTo(member.key, member.value, fields...);
}

// Returns a function that reads, from an object, the only text that is needed.
auto textUnder(std::string_view key, std::string& destination) {
    return [key, &destination](const element& object) { readMembers(object, key, destination); };
}

PlainFile readFile(const element& object) {
    PlainFile file;
    std::string parentId;
    std::string projectId;
    std::string configuredProjectId;
    const auto readAttributes = [&](const element& attributes) {
        readMembers(
            attributes, "subTypes", [&](const element& value) { textUnder("value", file.subTypes.emplace())(value); },
            "configuredDesignProjectId", textUnder("value", configuredProjectId));
    };
    readMembers(
        object, "id", file.id, "type", file.type, "name", file.name, "project", textUnder("id", projectId), "parent",
        [&](const element& parent) { readMembers(parent, "id", parentId, "type", file.parentType); }, "attributes",
        readAttributes);
    if (file.subTypes == configuration)
        file.parentId = std::move(configuredProjectId);
    else
        file.parentId = std::move(file.parentType == ContainerType::PROJECT ? projectId : parentId);
    return file;
}

PlainProject readProject(const element& object) {
    PlainProject project;
    const auto readStanding = [&](const element& me) {
        readMembers(me, "membership", project.membership, "role", project.role, "isMember", project.isMember);
    };
    readMembers(object, "id", project.id, "type", project.type, "name", project.name, "parent", project.parent,
                "visible", project.visible, "status", project.status, "communityType", project.communityType, "links",
                textUnder("self", project.href), "me", readStanding);
    return project;
}

std::shared_ptr<PlainVersion> readVersion(const element& object) {
    auto version = std::make_shared<PlainVersion>();
    readMembers(object, "id", version->id, "type", version->type, "name", version->name, "title", version->title,
                "file", textUnder("id", version->fileId));
    return version;
}

std::shared_ptr<PlainRelationship> readRelationship(const element& object) {
    auto relationship = std::make_shared<PlainRelationship>();
    readMembers(object, "id", relationship->id, "type", relationship->type, "self", relationship->href, "fromUrn",
                textUnder("id", relationship->fromUrn), "toUrn", textUnder("id", relationship->toUrn), "sourceFromUrn",
                textUnder("id", relationship->sourceFromUrn), "sourceToUrn", textUnder("id", relationship->sourceToUrn),
                "relationshipType", relationship->relationshipType);
    return relationship;
}

std::shared_ptr<PlainFolder> readFolder(const element& object) {
    auto folder = std::make_shared<PlainFolder>();
    const auto readActions = [&](const element& actions) {
        for (const element action : actions.get_array())
            folder->allowedActions.emplace(text(action));
    };
    const auto readStanding = [&](const element& me) {
        readMembers(me, "isMember", folder->isMember, "membership", folder->membership, "allowed-actions", readActions);
    };
    readMembers(object, "id", folder->id, "type", folder->type, "links", textUnder("self", folder->href), "name",
                folder->name, "parent", folder->parent, "visible", folder->visible, "status", folder->status,
                "containerType", folder->containerType, "me", readStanding);
    return folder;
}

// Returns a function that reads an array by calling `readElement` with each element.
template <class ReadElement>
auto eachElement(ReadElement readElement) {
    return [readElement](const element& array) {
        for (const element object : array.get_array())
            readElement(object);
    };
}

void readIncluded(const element& included, PlainAssembly& assembly) {
    readMembers(included, "projects",
                eachElement([&](const element& object) { assembly.projects.push_back(readProject(object)); }), "files",
                eachElement([&](const element& object) {
                    PlainFile file = readFile(object);
                    assembly.files.try_emplace(file.id, std::move(file));
                }),
                "versions", eachElement([&](const element& object) {
                    auto version = readVersion(object);
                    assembly.versions.insert_or_assign(version->id, std::move(version));
                }),
                "folders", eachElement([&](const element& object) {
                    auto folder = readFolder(object);
                    assembly.folders.insert_or_assign(folder->id, std::move(folder));
                }));
}

void readData(const element& data, PlainAssembly& assembly) {
    readMembers(data, "id", assembly.id, "type", assembly.type, "links", textUnder("self", assembly.href),
                "inaccessibleProjects", assembly.inaccessibleParents, "restrictedProjects", assembly.restrictedParents,
                "relationships", eachElement([&](const element& object) {
                    assembly.relationships.push_back(readRelationship(object));
                }));
}

} // namespace

PlainAssembly readByHand(const Qx::HTTPResponse& response) {
    simdjson::dom::parser parser;
    const std::string_view body = response.getBody();
    PlainAssembly assembly;
    readMembers(
        parser.parse(body.data(), body.size(), false).value(), "data",
        [&](const element& data) { readData(data, assembly); }, "included",
        [&](const element& included) { readIncluded(included, assembly); });
    findDirectReferences(assembly);
    return assembly;
}

} // namespace OrvaneBenchmarks

#include "Base/QxBaseCore10/Strings.h"
#include "Benchmarks/PlainRules.h"
#include "Benchmarks/Readers.h"

#include <simdjson.h>
#include <string_view>

namespace OrvaneBenchmarks {

namespace {

using simdjson::dom::element;

// Calls `visit` with each key and value of an object, in order.
template <class Visit>
void forEachMember(const element& value, Visit visit) {
    for (const auto member : value.get_object())
        visit(member.key, member.value);
}

std::string_view text(const element& value) {
    return value.get_string();
}

std::string_view textUnder(const element& object, std::string_view wanted) {
    std::string_view found;
    forEachMember(object, [&](std::string_view key, const element& value) {
        if (key == wanted)
            found = text(value);
    });
    return found;
}

PlainFile readFile(const element& object) {
    PlainFile file;
    std::string_view parentId;
    std::string_view projectId;
    std::string_view configuredProjectId;
    forEachMember(object, [&](std::string_view key, const element& value) {
        if (key == "id")
            file.id = text(value);
        else if (key == "type")
            file.type = text(value);
        else if (key == "name")
            file.name = Qx::ToIString(text(value));
        else if (key == "project")
            projectId = textUnder(value, "id");
        else if (key == "parent")
            forEachMember(value, [&](std::string_view parentKey, const element& parentValue) {
                if (parentKey == "id")
                    parentId = text(parentValue);
                else if (parentKey == "type")
                    file.parentType = containerTypeOf(text(parentValue));
            });
        else if (key == "attributes")
            forEachMember(value, [&](std::string_view attribute, const element& holder) {
                if (attribute == "subTypes")
                    file.subTypes = textUnder(holder, "value");
                else if (attribute == "configuredDesignProjectId")
                    configuredProjectId = textUnder(holder, "value");
            });
    });
    if (file.subTypes == "Configuration")
        file.parentId = configuredProjectId;
    else
        file.parentId = file.parentType == ContainerType::PROJECT ? projectId : parentId;
    return file;
}

PlainProject readProject(const element& object) {
    PlainProject project;
    forEachMember(object, [&](std::string_view key, const element& value) {
        if (key == "id")
            project.id = text(value);
        else if (key == "type")
            project.type = text(value);
        else if (key == "name")
            project.name = Qx::ToIString(text(value));
        else if (key == "parent")
            project.parent = text(value);
        else if (key == "visible")
            project.visible = value.get_bool();
        else if (key == "status")
            project.status = containerStatusOf(text(value));
        else if (key == "communityType")
            project.communityType = text(value);
        else if (key == "links")
            project.href = textUnder(value, "self");
        else if (key == "me")
            forEachMember(value, [&](std::string_view standing, const element& standingValue) {
                if (standing == "membership")
                    project.membership = text(standingValue);
                else if (standing == "role")
                    project.role = text(standingValue);
                else if (standing == "isMember")
                    project.isMember = text(standingValue);
            });
    });
    return project;
}

std::shared_ptr<PlainVersion> readVersion(const element& object) {
    auto version = std::make_shared<PlainVersion>();
    forEachMember(object, [&](std::string_view key, const element& value) {
        if (key == "id")
            version->id = text(value);
        else if (key == "type")
            version->type = text(value);
        else if (key == "name")
            version->name = text(value);
        else if (key == "title")
            version->title = text(value);
        else if (key == "file")
            version->fileId = textUnder(value, "id");
    });
    return version;
}

std::shared_ptr<PlainRelationship> readRelationship(const element& object) {
    auto relationship = std::make_shared<PlainRelationship>();
    forEachMember(object, [&](std::string_view key, const element& value) {
        if (key == "id")
            relationship->id = text(value);
        else if (key == "type")
            relationship->type = text(value);
        else if (key == "self")
            relationship->href = text(value);
        else if (key == "fromUrn")
            relationship->fromUrn = textUnder(value, "id");
        else if (key == "toUrn")
            relationship->toUrn = textUnder(value, "id");
        else if (key == "sourceFromUrn")
            relationship->sourceFromUrn = textUnder(value, "id");
        else if (key == "sourceToUrn")
            relationship->sourceToUrn = textUnder(value, "id");
        else if (key == "relationshipType")
            relationship->relationshipType = relationTypeOf(text(value));
    });
    return relationship;
}

std::shared_ptr<PlainFolder> readFolder(const element& object) {
    auto folder = std::make_shared<PlainFolder>();
    forEachMember(object, [&](std::string_view key, const element& value) {
        if (key == "id")
            folder->id = text(value);
        else if (key == "type")
            folder->type = text(value);
        else if (key == "links")
            folder->href = textUnder(value, "self");
        else if (key == "name")
            folder->name = text(value);
        else if (key == "parent")
            folder->parent = text(value);
        else if (key == "visible")
            folder->visible = value.get_bool();
        else if (key == "status")
            folder->status = containerStatusOf(text(value));
        else if (key == "containerType")
            folder->containerType = containerTypeOf(text(value));
        else if (key == "me")
            forEachMember(value, [&](std::string_view standing, const element& standingValue) {
                if (standing == "isMember")
                    folder->isMember = standingValue.get_bool();
                else if (standing == "membership")
                    folder->membership = text(standingValue);
                else if (standing == "allowed-actions")
                    for (const element action : standingValue.get_array())
                        folder->allowedActions.emplace(text(action));
            });
    });
    return folder;
}

void readData(const element& data, PlainAssembly& assembly) {
    forEachMember(data, [&](std::string_view key, const element& value) {
        if (key == "id")
            assembly.id = text(value);
        else if (key == "type")
            assembly.type = text(value);
        else if (key == "links")
            assembly.href = textUnder(value, "self");
        else if (key == "inaccessibleProjects")
            assembly.inaccessibleParents = static_cast<std::int32_t>(std::int64_t(value));
        else if (key == "restrictedProjects")
            assembly.restrictedParents = static_cast<std::int32_t>(std::int64_t(value));
        else if (key == "relationships")
            for (const element relationship : value.get_array())
                assembly.relationships.push_back(readRelationship(relationship));
    });
}

void readIncluded(const element& included, PlainAssembly& assembly) {
    forEachMember(included, [&](std::string_view key, const element& value) {
        for (const element object : value.get_array()) {
            if (key == "projects") {
                assembly.projects.push_back(readProject(object));
            } else if (key == "files") {
                PlainFile file = readFile(object);
                assembly.files.try_emplace(file.id, std::move(file));
            } else if (key == "versions") {
                auto version = readVersion(object);
                assembly.versions.insert_or_assign(version->id, std::move(version));
            } else if (key == "folders") {
                auto folder = readFolder(object);
                assembly.folders.insert_or_assign(folder->id, std::move(folder));
            }
        }
    });
}

} // namespace

PlainAssembly readByHand(const Qx::HTTPResponse& response) {
    simdjson::dom::parser parser;
    const std::string_view body = response.getBody();
    PlainAssembly assembly;
    forEachMember(parser.parse(body.data(), body.size(), false), [&](std::string_view key, const element& value) {
        if (key == "data")
            readData(value, assembly);
        else if (key == "included")
            readIncluded(value, assembly);
    });
    findDirectReferences(assembly);
    return assembly;
}

} // namespace OrvaneBenchmarks

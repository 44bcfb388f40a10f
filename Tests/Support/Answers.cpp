#include "Tests/Support/Answers.h"

#include "Testing/ScopedState.h"

#include <array>

using namespace Orvane::Payloads;
using namespace Orvane::Testing;

namespace {

Json describe(const std::unordered_map<std::string, ProjectData>& projects) {
    Json table = Json::object();
    for (const auto& [id, project] : projects)
        table[id] = ::describe(project);
    return table;
}

template <class RecordPointer>
Json describeFound(const RecordPointer& record) {
    return record ? ::describe(*record) : Json();
}

} // namespace

std::string nameOf(ContainerStatus status) {
    constexpr std::array names{"ACTIVE", "ARCHIVED", "INACTIVE", "DELETED", "OTHER", "UNSET"};
    return names.at(static_cast<std::size_t>(status));
}

std::string nameOf(ContainerType type) {
    constexpr std::array names{"OTHER", "FOLDER", "PROJECT"};
    return names.at(static_cast<std::size_t>(type));
}

std::string nameOf(Qx::CloudBrowser::Relationship::RelationType type) {
    constexpr std::array names{"OTHER", "DERIVED", "DEPENDENCY", "XREF", "AUXILIARY"};
    return names.at(static_cast<std::size_t>(type));
}

Json describe(const FilesData& file) {
    return {{"id", file.getId()},
            {"type", file.getType()},
            {"name", file.getName()},
            {"parentId", file.getParentId()},
            {"parentType", nameOf(file.getParentType())},
            {"subTypes", file.getSubTypes() ? Json(*file.getSubTypes()) : Json()},
            {"isConfigurationDesign", file.isConfigurationDesign()}};
}

Json describe(const FolderData& folder) {
    return {{"id", folder.getId()},
            {"type", folder.getType()},
            {"href", folder.getHref()},
            {"name", folder.name()},
            {"parent", folder.parent()},
            {"visible", folder.visible()},
            {"status", nameOf(folder.status())},
            {"isMember", folder.isMember()},
            {"membership", folder.membership()},
            {"containerType", nameOf(folder.type())},
            {"allowedActions", folder.allowedActions()},
            {"mayRead", folder.hasPermission("read")},
            {"isValid", folder.isValid()}};
}

Json describe(const ProjectData& project) {
    return {{"id", project.getId()},
            {"type", project.getType()},
            {"href", project.getHref()},
            {"name", project.getName()},
            {"parent", project.getParent()},
            {"visible", project.Visible()},
            {"status", nameOf(project.getStatus())},
            {"membership", project.getMembership()},
            {"role", project.getRole()},
            {"communityType", project.getCommunityType()},
            {"isMember", project.IsMember()},
            {"isViewerRole", project.IsViewerRole()},
            {"isControlledProject", project.isControlledProject()}};
}

Json describe(const RelationshipData& relationship) {
    return {{"id", relationship.getId()},
            {"type", relationship.getType()},
            {"href", relationship.getHref()},
            {"fromUrn", relationship.fromUrn()},
            {"toUrn", relationship.toUrn()},
            {"sourceFromUrn", relationship.sourceFromUrn()},
            {"sourceToUrn", relationship.sourceToUrn()},
            {"relationshipType", nameOf(relationship.relationshipType())}};
}

Json describe(const VersionData& version) {
    return {{"id", version.getId()},
            {"type", version.getType()},
            {"name", version.getName()},
            {"title", version.getTitle()},
            {"fileId", version.getFileId()}};
}

Json answersOf(const FullAssemblyData& document, const std::vector<std::string>& ids) {
    Json answers{{"getId", document.getId()},
                 {"getType", document.getType()},
                 {"getInaccessibleParents", document.getInaccessibleParents()},
                 {"getRestrictedParents", document.getRestrictedParents()},
                 {"getDeletedParentsCount", document.getDeletedParentsCount()},
                 {"getArchivedParents", document.getArchivedParents()},
                 {"getDeletedParents", document.getDeletedParents()},
                 {"getInactiveParents", document.getInactiveParents()},
                 {"getAccessDeniedParents", document.getAccessDeniedParents()},
                 {"getDirectReferencedFiles", document.getDirectReferencedFiles()},
                 {"getProjectDetails", describe(document.getProjectDetails())},
                 {"getProjectDetailsForFiles", describe(document.getProjectDetailsForFiles())},
                 {"getProjectMemberships", Json::object()}};
    for (const auto& [id, membership] : document.getProjectMemberships())
        answers["getProjectMemberships"][Qx::ToHString(id)] = membership;
    for (const std::string& id : ids) {
        answers["getProjectName"][id] = document.getProjectName(id);
        answers["projectMembership"][id] = document.projectMembership(id);
    }
    return answers;
}

Json answersOf(const FullAssemblyDataV3& document, const std::vector<std::string>& ids) {
    Json answers = answersOf(static_cast<const FullAssemblyData&>(document), ids);
    answers["getAllReferencedFiles"] = document.getAllReferencedFiles();
    answers["getAllRelationships"] = Json::array();
    for (const auto& relationship : document.getAllRelationships())
        answers["getAllRelationships"].push_back(describe(*relationship));
    for (const std::string& id : ids) {
        answers["getFileById"][id] = describeFound(document.getFileById(id));
        answers["getFolder"][id] = describeFound(document.getFolder(id));
        answers["getProject"][id] = describeFound(document.getProject(id));
    }
    return answers;
}

Json eventOf(const FullAssemblyData& document, const std::wstring& workflow) {
    Json events = Json::array();
    const ScopedState listening = scopedEventSink([&](const Qx::Analytics::Report& event, bool now) {
        Json& tracked = events.emplace_back(Json{{"event", event.eventName}, {"now", now}});
        for (const auto& [key, value] : event.properties)
            tracked[Qx::ToHString(key)] = value;
    });
    document.sendFullAssemblyAnalytics(workflow);
    return events.size() == 1 ? events.front() : events;
}

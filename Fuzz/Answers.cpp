#include "Fuzz/Answers.h"

#include "Base/QxBaseCore10/Analytics.h"
#include "Fuzz/AnswerText.h"
#include "Tests/Support/ScopedState.h"

#include <memory>

namespace OrvaneFuzz {

namespace {

using namespace Orvane::Payloads;

template <class Enumerator>
std::string number(Enumerator value) {
    return text(static_cast<std::int32_t>(value));
}

Record describe(const FilesData& file) {
    const auto subTypes = file.getSubTypes();
    return {{"id", text(file.getId())},
            {"type", text(file.getType())},
            {"name", text(file.getName())},
            {"parentId", text(file.getParentId())},
            {"parentType", number(file.getParentType())},
            {"subTypes", subTypes ? text(*subTypes) : "none"},
            {"isConfigurationDesign", text(file.isConfigurationDesign())}};
}

Record describe(const ProjectData& project) {
    return {{"id", text(project.getId())},
            {"type", text(project.getType())},
            {"href", text(project.getHref())},
            {"name", text(project.getName())},
            {"parent", text(project.getParent())},
            {"visible", text(project.Visible())},
            {"status", number(project.getStatus())},
            {"membership", text(project.getMembership())},
            {"role", text(project.getRole())},
            {"communityType", text(project.getCommunityType())},
            {"isMember", text(project.IsMember())},
            {"isViewerRole", text(project.IsViewerRole())},
            {"isControlledProject", text(project.isControlledProject())}};
}

Record describe(const FolderData& folder) {
    const auto& actions = folder.allowedActions();
    return {{"id", text(folder.getId())},
            {"type", text(folder.getType())},
            {"href", text(folder.getHref())},
            {"name", text(folder.name())},
            {"parent", text(folder.parent())},
            {"visible", text(folder.visible())},
            {"status", number(folder.status())},
            {"isMember", text(folder.isMember())},
            {"membership", text(folder.membership())},
            {"containerType", number(folder.type())},
            {"allowedActions", text(std::vector<std::string>(actions.begin(), actions.end()))},
            {"mayRead", text(folder.hasPermission("read"))},
            {"isValid", text(folder.isValid())}};
}

Record describe(const RelationshipData& relationship) {
    return {{"id", text(relationship.getId())},
            {"type", text(relationship.getType())},
            {"href", text(relationship.getHref())},
            {"fromUrn", text(relationship.fromUrn())},
            {"toUrn", text(relationship.toUrn())},
            {"sourceFromUrn", text(relationship.sourceFromUrn())},
            {"sourceToUrn", text(relationship.sourceToUrn())},
            {"relationshipType", number(relationship.relationshipType())}};
}

template <class RecordPointer>
std::string describeFound(const RecordPointer& record) {
    return record ? text(describe(*record)) : "none";
}

std::string describeAll(const std::unordered_map<std::string, ProjectData>& projects) {
    std::unordered_map<std::string, Record> described;
    for (const auto& [id, project] : projects)
        described.emplace(id, describe(project));
    return text(described);
}

std::string describeAll(const std::vector<std::shared_ptr<RelationshipData>>& relationships) {
    std::vector<Record> described;
    for (const auto& relationship : relationships)
        described.push_back(describe(*relationship));
    return text(described);
}

} // namespace

Answers answersOf(const FullAssemblyData& document, const std::vector<std::string>& ids) {
    Answers answers{{"getId", text(document.getId())},
                    {"getType", text(document.getType())},
                    {"getInaccessibleParents", text(document.getInaccessibleParents())},
                    {"getRestrictedParents", text(document.getRestrictedParents())},
                    {"getDeletedParentsCount", text(document.getDeletedParentsCount())},
                    {"getArchivedParents", text(document.getArchivedParents())},
                    {"getDeletedParents", text(document.getDeletedParents())},
                    {"getInactiveParents", text(document.getInactiveParents())},
                    {"getAccessDeniedParents", text(document.getAccessDeniedParents())},
                    {"getDirectReferencedFiles", text(document.getDirectReferencedFiles())},
                    {"getProjectDetails", describeAll(document.getProjectDetails())},
                    {"getProjectDetailsForFiles", describeAll(document.getProjectDetailsForFiles())},
                    {"getProjectMemberships", text(document.getProjectMemberships())}};
    for (const std::string& id : ids) {
        answers["getProjectName " + id] = text(document.getProjectName(id));
        answers["projectMembership " + id] = text(document.projectMembership(id));
    }
    return answers;
}

Answers answersOf(const FullAssemblyDataV3& document, const std::vector<std::string>& ids) {
    Answers answers = answersOf(static_cast<const FullAssemblyData&>(document), ids);
    answers["getAllReferencedFiles"] = text(document.getAllReferencedFiles());
    answers["getAllRelationships"] = describeAll(document.getAllRelationships());
    for (const std::string& id : ids) {
        answers["getFileById " + id] = describeFound(document.getFileById(id));
        answers["getFolder " + id] = describeFound(document.getFolder(id));
        answers["getProject " + id] = describeFound(document.getProject(id));
    }
    return answers;
}

std::string reportOf(const FullAssemblyData& document) {
    std::string report;
    const ScopedState listening = scopedEventSink([&](const Qx::Analytics::Report& event, bool now) {
        report += text(event.eventName) + text(event.properties) + text(now);
    });
    document.sendFullAssemblyAnalytics(L"workflow");
    return report;
}

} // namespace OrvaneFuzz

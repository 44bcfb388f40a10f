// The queries on files, projects and relationships, for both API versions side by side. Ids are
// compared as a whole and never parsed.

#include "Server/Orvane/Payloads/FullAssemblyData.h"

#include "Base/QxBaseCore10/Strings.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <algorithm>
#include <string_view>

namespace Orvane::Payloads {

namespace {

template <class Record>
std::shared_ptr<Record> find(const std::map<std::string, std::shared_ptr<Record>>& records, const std::string& id) {
    const auto found = records.find(id);
    return found == records.end() ? nullptr : found->second;
}

} // namespace

std::unordered_map<std::string, std::wstring> FullAssemblyData::getDirectReferencedFiles() const {
    std::unordered_map<std::string, std::wstring> names;
    names.reserve(files_.size());
    for (const auto& [id, file] : files_)
        names.try_emplace(id, file.getName());
    return names;
}

std::unordered_map<std::string, std::wstring> FullAssemblyDataV3::getDirectReferencedFiles() const {
    return directReferencedFiles_;
}

std::unordered_map<std::string, std::wstring> FullAssemblyDataV3::getAllReferencedFiles() const {
    return FullAssemblyData::getDirectReferencedFiles();
}

const std::vector<std::shared_ptr<RelationshipData>>& FullAssemblyDataV3::getAllRelationships() const {
    return relationships_;
}

const FilesData* FullAssemblyData::findFile(const std::string& fileId) const {
    const auto found = files_.find(fileId);
    return found == files_.end() ? nullptr : &found->second;
}

const FilesData* FullAssemblyDataV3::getFileById(const std::string& fileId) const {
    return findFile(fileId);
}

const std::shared_ptr<FolderData> FullAssemblyDataV3::getFolder(const std::string& folderId) const {
    return find(folders_, folderId);
}

const std::shared_ptr<VersionData> FullAssemblyDataV3::getVersionById(const std::string& versionId) const {
    return find(versions_, versionId);
}

const ProjectData* FullAssemblyData::findProject(const std::string& projectId) const {
    const auto found = std::find_if(projects_.begin(), projects_.end(),
                                    [&](const ProjectData& project) { return project.id_ == projectId; });
    return found == projects_.end() ? nullptr : &*found;
}

const ProjectData* FullAssemblyDataV3::getProject(std::string projectId) const {
    return findProject(projectId);
}

std::wstring FullAssemblyData::getProjectName(const std::string& projectId) const {
    const ProjectData* project = findProject(projectId);
    return project ? project->getName() : std::wstring();
}

std::string FullAssemblyData::projectMembership(const std::string& projectId) const {
    // A project with this id that is not active is skipped, since a later one may be active.
    for (const ProjectData& project : projects_)
        if (project.id_ == projectId && project.getStatus() == ContainerStatus::ACTIVE)
            return project.getMembership();
    return {};
}

std::unordered_map<std::string, ProjectData> FullAssemblyData::getProjectDetails() const {
    std::unordered_map<std::string, ProjectData> details;
    details.reserve(projects_.size());
    for (const ProjectData& project : projects_)
        details.try_emplace(project.id_, project);
    return details;
}

std::unordered_map<std::string, ProjectData> FullAssemblyData::getProjectDetailsForFiles() const {
    // An index, since scanning the projects for each file could take hours for a large answer.
    std::map<std::string_view, const ProjectData*> firstById;
    for (const ProjectData& project : projects_)
        firstById.try_emplace(project.id_, &project);
    std::unordered_map<std::string, ProjectData> details;
    for (const auto& [id, file] : files_)
        if (const auto found = firstById.find(file.parentId_); found != firstById.end())
            details.try_emplace(id, *found->second);
    return details;
}

std::unordered_map<std::wstring, std::string> FullAssemblyData::getProjectMemberships() const {
    std::unordered_map<std::wstring, std::string> memberships;
    for (const ProjectData& project : projects_)
        if (project.getStatus() == ContainerStatus::ACTIVE)
            memberships.try_emplace(Qx::ToIString(project.id_), project.getMembership());
    return memberships;
}

} // namespace Orvane::Payloads

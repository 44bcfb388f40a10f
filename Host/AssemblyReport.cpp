#include "Host/AssemblyReport.h"

#include "Base/QxBaseCore10/Strings.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <algorithm>
#include <map>
#include <string>

namespace OrvaneHost {

namespace {

using Orvane::Payloads::ContainerStatus;
using Orvane::Payloads::FilesData;
using Orvane::Payloads::FolderData;
using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;
using Orvane::Payloads::ProjectData;
using Qx::ToHString;

// Hash maps have no particular order; a report needs one.
template <class Key, class Value>
std::map<Key, Value> sorted(const std::unordered_map<Key, Value>& map) {
    return {map.begin(), map.end()};
}

const char* nameOf(ContainerStatus status) {
    switch (status) {
    case ContainerStatus::ACTIVE:
        return "Active";
    case ContainerStatus::ARCHIVED:
        return "Archived";
    case ContainerStatus::INACTIVE:
        return "Inactive";
    case ContainerStatus::DELETED:
        return "Deleted";
    default:
        return "other";
    }
}

Report::Fact countOf(const char* key, const char* label, std::size_t count) {
    return {key, label, static_cast<std::int64_t>(count)};
}

std::vector<Report::Fact> factsOf(const FullAssemblyData& assembly, std::size_t fileCount) {
    return {
        {"id", "version", assembly.getId()},
        countOf("projects", "projects", assembly.getProjectDetails().size()),
        countOf("files", "files", fileCount),
        {"inaccessibleProjects", "inaccessible projects", assembly.getInaccessibleParents()},
        {"restrictedProjects", "restricted projects", assembly.getRestrictedParents()},
        {"deletedParents", "deleted parents", assembly.getDeletedParentsCount()},
    };
}

Report::Table listParents(const char* key, const char* title, const std::vector<std::wstring>& parents) {
    Report::Table table{key, title, {{"parent", "project or folder"}}, {}};
    for (const std::wstring& parent : parents)
        table.rows.push_back({ToHString(parent)});
    return table;
}

void addParents(Report& report, const FullAssemblyData& assembly) {
    report.tables.push_back(listParents("archived", "Archived parents", assembly.getArchivedParents()));
    report.tables.push_back(listParents("inactive", "Inactive parents", assembly.getInactiveParents()));
    report.tables.push_back(listParents("deleted", "Deleted parents", assembly.getDeletedParents()));
    report.tables.push_back(
        listParents("accessDenied", "Parents you cannot work in", assembly.getAccessDeniedParents()));
}

Report::Table listProjects(const FullAssemblyData& assembly) {
    Report::Table table{
        "projectDetails", "Projects", {{"name", "name"}, {"status", "status"}, {"role", "role"}, {"id", "id"}}, {}};
    for (const auto& [id, project] : sorted(assembly.getProjectDetails()))
        table.rows.push_back({ToHString(project.getName()), nameOf(project.getStatus()), project.getRole(), id});
    return table;
}

Report::Table listMemberships(const FullAssemblyData& assembly) {
    Report::Table table{"memberships",
                        "Memberships in active projects",
                        {{"project", "project"}, {"membership", "membership"}, {"id", "id"}},
                        {}};
    for (const auto& [wideId, membership] : sorted(assembly.getProjectMemberships())) {
        const std::string id = ToHString(wideId);
        table.rows.push_back({ToHString(assembly.getProjectName(id)), membership, id});
    }
    return table;
}

Report::Table listDirectReferences(const FullAssemblyDataV3& assembly) {
    Report::Table table{"directReferences", "Directly referenced files", {{"title", "title"}, {"id", "file"}}, {}};
    for (const auto& [id, title] : sorted(assembly.getDirectReferencedFiles()))
        table.rows.push_back({ToHString(title), id});
    return table;
}

struct Parent {
    const char* kind;
    std::string name;
};

// Returns the parent's name if the assembly contains the parent, otherwise its id.
Parent parentOf(const FilesData& file, const FullAssemblyDataV3& assembly) {
    const std::string id = file.getParentId();
    if (const std::shared_ptr<FolderData> folder = assembly.getFolder(id))
        return {"folder", folder->name()};
    if (const ProjectData* project = assembly.getProject(id))
        return {"project", ToHString(project->getName())};
    return {"unknown", id};
}

Report::Table listFiles(const FullAssemblyDataV3& assembly) {
    Report::Table table{
        "allFiles", "All files", {{"name", "name"}, {"parentKind", "in"}, {"parent", "parent"}, {"id", "file"}}, {}};
    for (const auto& [id, name] : sorted(assembly.getAllReferencedFiles())) {
        const FilesData* file = assembly.getFileById(id);
        const Parent parent = file ? parentOf(*file, assembly) : Parent{"unknown", ""};
        table.rows.push_back({ToHString(name), parent.kind, parent.name, id});
    }
    return table;
}

Report::Table listEvents(const std::vector<Qx::Analytics::Report>& events) {
    Report::Table table{"usageEvents",
                        "Usage event properties",
                        {{"event", "event"}, {"property", "property"}, {"value", "value"}},
                        {}};
    for (const Qx::Analytics::Report& event : events)
        for (const auto& [key, value] : sorted(event.properties))
            table.rows.push_back({ToHString(event.eventName), ToHString(key), ToHString(value)});
    return table;
}

} // namespace

Report reportAssembly(const FullAssemblyDataV3& assembly, const std::vector<Qx::Analytics::Report>& events) {
    Report report{"Full assembly", factsOf(assembly, assembly.getAllReferencedFiles().size()), {}};
    report.facts.push_back(countOf("relationships", "relationships", assembly.getAllRelationships().size()));
    report.tables.push_back(listDirectReferences(assembly));
    report.tables.push_back(listFiles(assembly));
    report.tables.push_back(listProjects(assembly));
    addParents(report, assembly);
    report.tables.push_back(listMemberships(assembly));
    report.tables.push_back(listEvents(events));
    return report;
}

Report reportAccess(const FullAssemblyData& assembly) {
    const auto projectsOfFiles = sorted(assembly.getProjectDetailsForFiles());
    const auto files = sorted(assembly.getDirectReferencedFiles());
    Report report{"Access requested", factsOf(assembly, files.size()), {}};
    Report::Table table{"allFiles", "Files", {{"name", "name"}, {"project", "project"}, {"id", "file"}}, {}};
    for (const auto& [id, name] : files) {
        const auto project = projectsOfFiles.find(id);
        table.rows.push_back(
            {ToHString(name), project == projectsOfFiles.end() ? "" : ToHString(project->second.getName()), id});
    }
    report.tables.push_back(std::move(table));
    report.tables.push_back(listProjects(assembly));
    addParents(report, assembly);
    report.tables.push_back(listMemberships(assembly));
    return report;
}

} // namespace OrvaneHost

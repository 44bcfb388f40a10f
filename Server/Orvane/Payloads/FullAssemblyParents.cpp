// Queries on the parents that the user can't work in, for both API versions side by side.

#include "Server/Orvane/Payloads/FullAssemblyData.h"

#include "Base/QxBaseCore10/Strings.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

namespace Orvane::Payloads {

std::vector<std::wstring> FullAssemblyData::getParentByStatus(ContainerStatus status) const {
    std::vector<std::wstring> parents;
    for (const ProjectData& project : projects_)
        if (project.getStatus() == status)
            parents.push_back(project.getName());
    return parents;
}

std::vector<std::wstring> FullAssemblyDataV3::getParentByStatus(ContainerStatus status) const {
    std::vector<std::wstring> parents = FullAssemblyData::getParentByStatus(status);
    for (const auto& [id, folder] : folders_)
        if (folder->status() == status)
            parents.push_back(Qx::ToIString(id));
    return parents;
}

std::vector<std::wstring> FullAssemblyData::getArchivedParents() const {
    return getParentByStatus(ContainerStatus::ARCHIVED);
}

std::vector<std::wstring> FullAssemblyDataV3::getArchivedParents() const {
    return FullAssemblyData::getArchivedParents();
}

std::vector<std::wstring> FullAssemblyData::getDeletedParents() const {
    return getParentByStatus(ContainerStatus::DELETED);
}

std::vector<std::wstring> FullAssemblyDataV3::getDeletedParents() const {
    return FullAssemblyData::getDeletedParents();
}

std::vector<std::wstring> FullAssemblyData::getInactiveParents() const {
    return getParentByStatus(ContainerStatus::INACTIVE);
}

std::vector<std::wstring> FullAssemblyDataV3::getInactiveParents() const {
    return FullAssemblyData::getInactiveParents();
}

std::int32_t FullAssemblyData::getDeletedParentsCount() const {
    return static_cast<std::int32_t>(getDeletedParents().size());
}

std::int32_t FullAssemblyDataV3::getDeletedParentsCount() const {
    return FullAssemblyData::getDeletedParentsCount();
}

std::vector<std::wstring> FullAssemblyData::getAccessDeniedParents() const {
    std::vector<std::wstring> parents;
    for (const ProjectData& project : projects_) {
        if (project.getStatus() != ContainerStatus::ACTIVE)
            continue;
        if (project.IsMember() && !project.IsViewerRole())
            continue;
        parents.push_back(project.getName());
    }
    return parents;
}

std::vector<std::wstring> FullAssemblyDataV3::getAccessDeniedParents() const {
    std::vector<std::wstring> parents = FullAssemblyData::getAccessDeniedParents();
    for (const auto& [id, folder] : folders_)
        if (folder->status() == ContainerStatus::ACTIVE && !folder->hasPermission("read"))
            parents.push_back(Qx::ToIString(folder->name()));
    return parents;
}

std::int32_t FullAssemblyData::getInaccessibleParents() const {
    return inaccessibleParents_;
}

std::int32_t FullAssemblyData::getRestrictedParents() const {
    return restrictedParents_;
}

} // namespace Orvane::Payloads

// The queries on the parents that a user can't use as they stand.

#include "Server/Orvane/Payloads/FullAssemblyData.h"

#include "Base/QxBaseCore10/Strings.h"

namespace Orvane::Payloads {

std::vector<std::wstring> FullAssemblyData::getParentByStatus(ContainerStatus status) const {
    std::vector<std::wstring> parents;
    for (const ProjectData& project : projects_)
        if (project.getStatus() == status)
            parents.push_back(project.getName());
    return parents;
}

std::vector<std::wstring> FullAssemblyData::getArchivedParents() const {
    return getParentByStatus(ContainerStatus::ARCHIVED);
}

std::vector<std::wstring> FullAssemblyData::getDeletedParents() const {
    return getParentByStatus(ContainerStatus::DELETED);
}

std::vector<std::wstring> FullAssemblyData::getInactiveParents() const {
    return getParentByStatus(ContainerStatus::INACTIVE);
}

std::int32_t FullAssemblyData::getDeletedParentsCount() const {
    return static_cast<std::int32_t>(getDeletedParents().size());
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

std::int32_t FullAssemblyData::getInaccessibleParents() const {
    return inaccessibleParents_;
}

std::int32_t FullAssemblyData::getRestrictedParents() const {
    return restrictedParents_;
}

} // namespace Orvane::Payloads

// The usage event of a full assembly, for both API versions side by side.

#include "Server/Orvane/Payloads/FullAssemblyData.h"

#include "Base/QxBaseCore10/Analytics.h"
#include "Base/QxBaseCore10/Strings.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <sstream>

namespace Orvane::Payloads {

namespace {

// Every property is text: a flag is "1" or "0".
template <class Value>
void addProperty(Qx::Analytics::Report& report, const std::wstring& key, const Value& value) {
    std::wostringstream text;
    text.exceptions(std::ios::badbit); // Otherwise the stream would swallow `std::bad_alloc`.
    text << value;
    report.properties.try_emplace(key, text.str());
}

// Creates the part of the event that both API versions share. The queries are virtual.
Qx::Analytics::Report makeReport(const FullAssemblyData& document, const wchar_t* generation,
                                 const std::wstring& workflow) {
    Qx::Analytics::Report report;
    report.eventName = L"FullAssembly";
    addProperty(report, L"Version", generation);
    addProperty(report, L"Workflow", workflow);
    addProperty(report, L"hasDeletedProjects", document.getDeletedParentsCount() > 0);
    addProperty(report, L"hasAccessDeniedProjects", !document.getAccessDeniedParents().empty());
    addProperty(report, L"hasArchivedProjects", !document.getArchivedParents().empty());
    addProperty(report, L"hasInaccessibleProjects", document.getInaccessibleParents() > 0);
    addProperty(report, L"hasRestrictedProjects", document.getRestrictedParents() > 0);
    return report;
}

} // namespace

void FullAssemblyData::sendFullAssemblyAnalytics(std::wstring workflow) const {
    Qx::Analytics::Report report = makeReport(*this, L"V2", workflow);
    Qx::Analytics::trackEvent(report, true);
}

void FullAssemblyDataV3::sendFullAssemblyAnalytics(std::wstring workflow) const {
    const std::wstring projectType = projectTypeOfOwnFile();
    Qx::Analytics::Report report = makeReport(*this, L"V3", workflow);
    addProperty(report, L"assemblyProjectType", projectType);
    Qx::Analytics::trackEvent(report, true);
}

std::wstring FullAssemblyDataV3::projectTypeOfOwnFile() const {
    constexpr const wchar_t* unknown = L"UNKNOWN";
    const auto version = getVersionById(getId());
    if (!version)
        return unknown;
    const FilesData* file = getFileById(version->getFileId());
    if (!file)
        return unknown;
    const std::string parentId = file->getParentId();
    // A folder takes precedence over a project with the same id, whatever its own fields say.
    if (getFolder(parentId))
        return L"CONTROLLED";
    const ProjectData* project = getProject(parentId);
    return project ? Qx::ToIString(project->getCommunityType()) : unknown;
}

} // namespace Orvane::Payloads

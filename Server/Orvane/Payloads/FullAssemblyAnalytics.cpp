// The usage event of a full assembly, of both generations side by side.

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
    text.exceptions(std::ios::badbit); // Without it a stream that finds no memory keeps that to itself.
    text << value;
    report.properties.try_emplace(key, text.str());
}

// The two generations differ only in what they call themselves; the queries answer for the document's own.
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
    // A folder wins over a project of the same id, whatever the folder says of itself.
    if (getFolder(parentId))
        return L"CONTROLLED";
    const ProjectData* project = getProject(parentId);
    return project ? Qx::ToIString(project->getCommunityType()) : unknown;
}

} // namespace Orvane::Payloads

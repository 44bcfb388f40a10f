#pragma once

#include "Server/Orvane/Payloads/ContainerStatus.h"
#include "Server/Orvane/Payloads/Data.h"
#include "Server/Orvane/Payloads/FilesData.h"
#include "Server/Orvane/Payloads/Links.h"
#include "Server/Orvane/Payloads/ProjectData.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace Orvane::Payloads {

/// The full assembly of one file version, as the first generation of the service gives it: the version's
/// identity ("data.id", "data.type"), two counts, and the projects and files of the assembly.
///
/// A document is complete when its constructor returns, owns all that it holds, and may be asked from several
/// threads at once as long as nobody assigns to it or calls `setId` or `setType`. Moving one copies it. Lists
/// and maps are built anew on each call and belong to the caller; nothing in them is sorted or deduplicated
/// unless told otherwise. A query that finds nothing gives an empty list, map or text. Apart from
/// `sendFullAssemblyAnalytics` only an allocation can make an operation throw; a query leaves the document as
/// it was, an assignment may leave the target with part of the source.
///
/// The order of the virtual operations is part of the binary interface, the destructor in its place included.
class QXORVANEDM10_EXPORT FullAssemblyData : public Data, private Links {
public:
    /// Both counts 0, all else empty.
    FullAssemblyData();

    /// Reads the root of a response body: "data" and "included.projects", "included.files". Nothing is
    /// required: what is missing or null, or no object or array where one is expected, leaves its part of the document
    /// empty; where a text is expected a number or boolean is taken as one. Elements whose "type" is not that of their
    /// array are skipped; of two files with one id the first stays. Linear in the size of the JSON, except for the
    /// ordered maps; no object or array of it is copied, and `root` is not kept.
    explicit FullAssemblyData(const Qx::JSONNode& root);

    FullAssemblyData(const FullAssemblyData& other);
    FullAssemblyData& operator=(const FullAssemblyData& other);

    /// The number of entries of `getDeletedParents`, and its cost.
    virtual std::int32_t getDeletedParentsCount() const;

    /// The names of the projects that are archived, deleted, inactive, in document order. One pass over the
    /// projects each.
    virtual std::vector<std::wstring> getArchivedParents() const;
    virtual std::vector<std::wstring> getDeletedParents() const;
    virtual std::vector<std::wstring> getInactiveParents() const;

    /// The names of the active projects that the user can't work in, in document order: no member, or a
    /// member in the role of a viewer. One pass over the projects.
    virtual std::vector<std::wstring> getAccessDeniedParents() const;

    /// Every file of the assembly: its id and its name. One pass over the files.
    virtual std::unordered_map<std::string, std::wstring> getDirectReferencedFiles() const;

    virtual ~FullAssemblyData();

    /// Tracks one usage event "FullAssembly" with the properties "Version" ("V2"), "Workflow" (the caller's word
    /// for what it is doing, as given) and, each "1" or "0", "hasDeletedProjects", "hasAccessDeniedProjects",
    /// "hasArchivedProjects", "hasInaccessibleProjects" and "hasRestrictedProjects". It names no file, folder or
    /// project. Runs in the calling thread; what the event sink throws passes through. The cost is that of the
    /// three lists.
    virtual void sendFullAssemblyAnalytics(std::wstring workflow) const;

    /// The key "data.inaccessibleProjects", a count of its own: nothing else in the document tells it; 0 by
    /// default, and where it is no 32-bit integer.
    std::int32_t getInaccessibleParents() const;

    /// The key "data.restrictedProjects", likewise.
    std::int32_t getRestrictedParents() const;

    /// Every project by its id; of two with one id the first in document order. One pass over the projects.
    std::unordered_map<std::string, ProjectData> getProjectDetails() const;

    /// For each file whose parent id is that of a known project, the file's id and a copy of the first such project.
    /// There is no way up from a file's folder to a project. One pass over projects and files, with a search of an
    /// ordered map for each.
    std::unordered_map<std::string, ProjectData> getProjectDetailsForFiles() const;

    /// For each active project its id and the user's membership, empty if there is none; of two active ones
    /// with one id the first in document order. One pass over the projects.
    std::unordered_map<std::wstring, std::string> getProjectMemberships() const;

    /// The name of the first project of that id, in any status. One pass over the projects.
    std::wstring getProjectName(const std::string& projectId) const;

    /// The user's membership in the first active project of that id. One pass over the projects.
    std::string projectMembership(const std::string& projectId) const;

protected:
    /// The names of the projects in that status, in document order.
    virtual std::vector<std::wstring> getParentByStatus(ContainerStatus status) const;

    /// For the document of the next generation: the file of that id, or null. One search of an ordered map.
    const FilesData* findFile(const std::string& fileId) const;

    /// Likewise: the first project of that id in document order, or null. One pass over the projects.
    const ProjectData* findProject(const std::string& projectId) const;

private:
    void readData(const Qx::JSONNode& data);
    void readIncluded(const Qx::JSONNode& included);

    std::int32_t inaccessibleParents_ = 0;
    std::int32_t restrictedParents_ = 0;
    std::vector<ProjectData> projects_;
    std::map<std::string, FilesData> files_;
};

} // namespace Orvane::Payloads

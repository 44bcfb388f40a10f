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

/// The full assembly of one file version, as the V2 service returns it: the version's identity
/// ("data.id", "data.type"), two counts, and the projects and files of the assembly.
///
/// A document is complete when its constructor returns, owns all that it contains, and may be
/// queried from several threads at once as long as no thread assigns to it or calls `setId` or
/// `setType`. Moving a document copies it. Lists and maps are built anew on each call and belong to
/// the caller; they are not sorted or deduplicated except as noted. A query that finds nothing
/// returns an empty list, map or string. Except for `sendFullAssemblyAnalytics`, only a failed
/// allocation makes an operation throw. A query never changes the document; an assignment that
/// throws may leave the target only partly assigned.
///
/// The order of the virtual functions, including the destructor, is part of the ABI.
class QXORVANEDM10_EXPORT FullAssemblyData : public Data, private Links {
public:
    /// Both counts are 0, everything else is empty.
    FullAssemblyData();

    /// Reads the root of a response body: "data", "included.projects" and "included.files". No key
    /// is required: if one is missing or null, or is not the expected object or array, its part of
    /// the document is empty; where text is expected, a number or boolean is converted to text.
    /// Elements whose "type" is not that of their array are skipped; of two files with the same id,
    /// the first is kept. Linear in the size of the JSON, except for the ordered maps; no object or
    /// array of it is copied, and `root` is not kept.
    explicit FullAssemblyData(const Qx::JSONNode& root);

    /// Copies all records: the copy is independent of `other`.
    FullAssemblyData(const FullAssemblyData& other);
    /// Copies as the copy constructor does.
    FullAssemblyData& operator=(const FullAssemblyData& other);

    /// Returns the number of entries in `getDeletedParents`, at the same cost.
    virtual std::int32_t getDeletedParentsCount() const;

    /// Returns the names of the archived projects, in document order. One pass over the projects.
    virtual std::vector<std::wstring> getArchivedParents() const;

    /// Returns the names of the deleted projects, in document order. One pass over the projects.
    virtual std::vector<std::wstring> getDeletedParents() const;

    /// Returns the names of the inactive projects, in document order. One pass over the projects.
    virtual std::vector<std::wstring> getInactiveParents() const;

    /// Returns the names of the active projects that the user can't work in, in document order:
    /// those in which the user is not a member, or has the role "VIEWER". One pass over the
    /// projects.
    virtual std::vector<std::wstring> getAccessDeniedParents() const;

    /// Returns the id and name of every file of the assembly. One pass over the files.
    virtual std::unordered_map<std::string, std::wstring> getDirectReferencedFiles() const;

    virtual ~FullAssemblyData();

    /// Tracks one usage event "FullAssembly" with the properties "Version" ("V2"), "Workflow"
    /// (`workflow`, unchanged) and, each "1" or "0", "hasDeletedProjects",
    /// "hasAccessDeniedProjects", "hasArchivedProjects", "hasInaccessibleProjects" and
    /// "hasRestrictedProjects". It names no file, folder or project. Runs in the calling thread;
    /// exceptions from the event sink propagate. The cost is that of the lists of deleted,
    /// access-denied and archived parents.
    virtual void sendFullAssemblyAnalytics(std::wstring workflow) const;

    /// The value of "data.inaccessibleProjects", a count from the service that can't be derived
    /// from the rest of the document; 0 by default, and if it is not a 32-bit integer.
    std::int32_t getInaccessibleParents() const;

    /// Likewise, the value of "data.restrictedProjects".
    std::int32_t getRestrictedParents() const;

    /// Returns all projects by id; of two with the same id, the first in document order. One pass
    /// over the projects.
    std::unordered_map<std::string, ProjectData> getProjectDetails() const;

    /// Returns, for each file whose parent id is that of a project in the document, the file's id
    /// and a copy of the first such project. Folders are not followed up to their project, so a
    /// file in a folder is not included. One pass over projects and files, with a lookup in an
    /// ordered map for each.
    std::unordered_map<std::string, ProjectData> getProjectDetailsForFiles() const;

    /// Returns the id of each active project and the user's membership in it, empty if there is
    /// none; of two active projects with the same id, the first in document order. One pass over
    /// the projects.
    std::unordered_map<std::wstring, std::string> getProjectMemberships() const;

    /// Returns the name of the first project with that id, whatever its status. One pass over the
    /// projects.
    std::wstring getProjectName(const std::string& projectId) const;

    /// Returns the user's membership in the first active project with that id. One pass over the
    /// projects.
    std::string projectMembership(const std::string& projectId) const;

protected:
    /// Returns the names of the projects with that status, in document order.
    virtual std::vector<std::wstring> getParentByStatus(ContainerStatus status) const;

    /// For `FullAssemblyDataV3`: returns the file with that id, or null. One lookup in an ordered
    /// map.
    const FilesData* findFile(const std::string& fileId) const;

    /// Likewise: returns the first project with that id in document order, or null. One pass over
    /// the projects.
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

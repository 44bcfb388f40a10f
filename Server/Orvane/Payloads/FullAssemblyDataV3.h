#pragma once

#include "Server/Orvane/Payloads/FolderData.h"
#include "Server/Orvane/Payloads/FullAssemblyData.h"
#include "Server/Orvane/Payloads/RelationshipData.h"
#include "Server/Orvane/Payloads/VersionData.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace Orvane::Payloads {

/// The full assembly of one file version, as the V3 service returns it: what `FullAssemblyData`
/// contains, plus all versions, folders and relationships, and the files that the version directly
/// refers to or is referred to by.
///
/// The notes on threads, results and failures at `FullAssemblyData` apply here too. Copies of a
/// document share its folders, versions and relationships; each copy has its own projects and
/// files.
class QXORVANEDM10_EXPORT FullAssemblyDataV3 : public FullAssemblyData {
public:
    /// Both counts are 0, everything else is empty.
    FullAssemblyDataV3();

    /// Reads the root of a response body: what `FullAssemblyData` reads, then "included.versions",
    /// "data.relationships" and "included.folders". No key is required. Folders whose "type" is not
    /// "folders" are skipped, while versions and relationships are kept whatever their "type"; of
    /// two versions or two folders with the same id, the last is kept. Linear in the size of the
    /// JSON, except for the ordered maps; no object or array of it is copied, and `root` is not
    /// kept.
    explicit FullAssemblyDataV3(const Qx::JSONNode& root);

    /// Copies as described above.
    FullAssemblyDataV3(const FullAssemblyDataV3& other);

    /// Moves the versions, folders, relationships and direct references, of which the source then
    /// has none; copies the rest, which the source keeps.
    FullAssemblyDataV3(FullAssemblyDataV3&& other);

    /// Copies as the copy constructor does.
    FullAssemblyDataV3& operator=(const FullAssemblyDataV3& other);

    /// Moves as the move constructor does. Assigning a document to itself leaves it unchanged.
    FullAssemblyDataV3& operator=(FullAssemblyDataV3&& other);

    std::int32_t getDeletedParentsCount() const override;

    /// Returns the names of the archived projects, in document order, followed by the ids (not the
    /// names) of the archived folders, in ascending order. One pass over projects and folders.
    std::vector<std::wstring> getArchivedParents() const override;

    /// The same as `getArchivedParents`, for the deleted projects and folders.
    std::vector<std::wstring> getDeletedParents() const override;

    /// The same as `getArchivedParents`, for the inactive projects and folders.
    std::vector<std::wstring> getInactiveParents() const override;

    /// Returns the names of the projects as in `FullAssemblyData`, followed by the names (not the
    /// ids) of the active folders without the allowed action "read", in ascending order of their
    /// ids.
    std::vector<std::wstring> getAccessDeniedParents() const override;

    /// Returns the files that a relationship of any type connects with the document's own version,
    /// in either direction: the file's id and the title of the version at the other end. A version
    /// that is not in the document, or has no file or no title, is left out; if two versions of a
    /// file are connected, the first relationship determines the title. Determined when the
    /// document is read, so a later `setId` changes nothing; the cost is that of a copy.
    std::unordered_map<std::string, std::wstring> getDirectReferencedFiles() const override;

    ~FullAssemblyDataV3() override;

    /// The same as in `FullAssemblyData`, with "V3" as the "Version", and with the additional
    /// property "assemblyProjectType": "CONTROLLED" if the document's own file is in one of its
    /// folders; otherwise the community type of the file's project, as the service spells it;
    /// "UNKNOWN" if there is neither. The flags cover folders as well as projects.
    void sendFullAssemblyAnalytics(std::wstring workflow) const override;

    /// Returns the id and name of every file of the assembly, including the document's own. One
    /// pass over the files.
    std::unordered_map<std::string, std::wstring> getAllReferencedFiles() const;

    /// Returns all relationships, in document order. Valid until the document is assigned to or
    /// destroyed.
    const std::vector<std::shared_ptr<RelationshipData>>& getAllRelationships() const;

    /// Returns the file with that id, or null. It belongs to the document and is valid until the
    /// document is assigned to or destroyed. One lookup in an ordered map.
    const FilesData* getFileById(const std::string& fileId) const;

    /// Returns the folder with that id, or null. It is shared with every copy of the document and
    /// may outlive them. One lookup in an ordered map.
    const std::shared_ptr<FolderData> getFolder(const std::string& folderId) const;

    /// Returns the first project with that id in document order, whatever its status, or null. It
    /// belongs to the document and is valid until the document is assigned to or destroyed. One
    /// pass over the projects.
    const ProjectData* getProject(std::string projectId) const;

private:
    std::vector<std::wstring> getParentByStatus(ContainerStatus status) const override;

    const std::shared_ptr<VersionData> getVersionById(const std::string& versionId) const;

    void readVersions(const Qx::JSONNode& included);
    void readRelationships(const Qx::JSONNode& data);
    void readFolders(const Qx::JSONNode& included);
    void addDirectReference(const RelationshipData& relationship, const std::string& ownVersionId);
    std::wstring projectTypeOfOwnFile() const;

    std::map<std::string, std::shared_ptr<VersionData>> versions_;
    std::map<std::string, std::shared_ptr<FolderData>> folders_;
    std::vector<std::shared_ptr<RelationshipData>> relationships_;
    std::unordered_map<std::string, std::wstring> directReferencedFiles_;
};

} // namespace Orvane::Payloads

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

/// The full assembly of one file version, as the V3 service gives it: what `FullAssemblyData` holds, and
/// every version, folder and relationship, with the files that the version directly refers to or is referred
/// to by.
///
/// What is said of `FullAssemblyData` on threads, results and failure holds here too. Copies of a document
/// share its folders, versions and relationships; its projects and files are each copy's own.
class QXORVANEDM10_EXPORT FullAssemblyDataV3 : public FullAssemblyData {
public:
    /// Both counts 0, all else empty.
    FullAssemblyDataV3();

    /// Reads the root of a response body: what `FullAssemblyData` reads, then "included.versions",
    /// "data.relationships" and "included.folders". Nothing is required. Folders whose "type" is not "folders"
    /// are skipped, while versions and relationships are kept whatever their "type"; of two versions or two
    /// folders with one id the last stays. Linear in the size of the JSON, except for the ordered maps; no object or
    /// array of it is copied, and `root` is not kept.
    explicit FullAssemblyDataV3(const Qx::JSONNode& root);

    FullAssemblyDataV3(const FullAssemblyDataV3& other);

    /// Takes versions, folders, relationships and direct references and leaves the source without; copies the
    /// rest, which the source keeps.
    FullAssemblyDataV3(FullAssemblyDataV3&& other);

    FullAssemblyDataV3& operator=(const FullAssemblyDataV3& other);

    /// Moves as the constructor does. Assigning a document to itself leaves it unchanged.
    FullAssemblyDataV3& operator=(FullAssemblyDataV3&& other);

    std::int32_t getDeletedParentsCount() const override;

    /// The names of the projects in that status, in document order, followed by the ids of the folders,
    /// in ascending order. One pass over projects and folders each.
    std::vector<std::wstring> getArchivedParents() const override;
    std::vector<std::wstring> getDeletedParents() const override;
    std::vector<std::wstring> getInactiveParents() const override;

    /// The names of the projects as in `FullAssemblyData`, followed by the names (not the ids) of the
    /// active folders without the allowed action "read", in ascending order of their ids.
    std::vector<std::wstring> getAccessDeniedParents() const override;

    /// The files that a relationship ties to the document's own version, in either direction: the file's id
    /// and the title of the version at the other end, whatever the relationship's type. A version that is not
    /// known, or has no file or no title, gives nothing; of two versions of one file the first met gives the
    /// title. Worked out while reading, so a later `setId` changes nothing; the cost is that of a copy.
    std::unordered_map<std::string, std::wstring> getDirectReferencedFiles() const override;

    ~FullAssemblyDataV3() override;

    /// As in `FullAssemblyData`, with "Version" "V3", and "assemblyProjectType": "CONTROLLED" if the document's
    /// own file lies in a known folder, else the community type of its project as the service spells it, else
    /// "UNKNOWN". Its flags speak of folders as well as projects.
    void sendFullAssemblyAnalytics(std::wstring workflow) const override;

    /// Every file of the assembly, the document's own included: its id and its name. One pass over the files.
    std::unordered_map<std::string, std::wstring> getAllReferencedFiles() const;

    /// Every relationship, in document order. Good until the document is assigned to or destroyed.
    const std::vector<std::shared_ptr<RelationshipData>>& getAllRelationships() const;

    /// The file of that id, or null. It belongs to the document and is good until the document is assigned to
    /// or destroyed. One search of an ordered map.
    const FilesData* getFileById(const std::string& fileId) const;

    /// The folder of that id, or an empty pointer. It is shared with every copy of the document and may
    /// outlive them. One search of an ordered map.
    const std::shared_ptr<FolderData> getFolder(const std::string& folderId) const;

    /// The first project of that id in document order, in any status, or null. It belongs to the document and
    /// is good until the document is assigned to or destroyed. One pass over the projects.
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

#include "Benchmarks/Checksum.h"

#include <boost/container_hash/hash.hpp>
#include <utility>

namespace OrvaneBenchmarks {

namespace {

using namespace Orvane::Payloads;
// The document gives nobody a list of its versions or folders, so the check fetches them from where they are kept:
// an explicit instantiation may name what is private.
template <class Record>
using SharedRecords = std::map<std::string, std::shared_ptr<Record>>;

const SharedRecords<VersionData>& recordsOf(const FullAssemblyDataV3& document, const VersionData*);
const SharedRecords<FolderData>& recordsOf(const FullAssemblyDataV3& document, const FolderData*);

template <class Record, SharedRecords<Record> FullAssemblyDataV3::*records>
struct RecordsAt {
    friend const SharedRecords<Record>& recordsOf(const FullAssemblyDataV3& document, const Record*) {
        return document.*records;
    }
};
template struct RecordsAt<VersionData, &FullAssemblyDataV3::versions_>;
template struct RecordsAt<FolderData, &FullAssemblyDataV3::folders_>;

PlainFile plain(const FilesData& file) {
    return {file.getId(), file.getType(), file.getName(), file.getParentId(), file.getParentType(), file.getSubTypes()};
}

PlainProject plain(const ProjectData& project) {
    return {project.getId(),     project.getType(),         project.getHref(),
            project.getName(),   project.getParent(),       project.Visible(),
            project.getStatus(), project.getMembership(),   project.IsMember() ? "true" : "false",
            project.getRole(),   project.getCommunityType()};
}

PlainVersion plain(const VersionData& version) {
    return {version.getId(), version.getType(), version.getName(), version.getFileId(), version.getTitle()};
}

PlainFolder plain(const FolderData& folder) {
    return {folder.getId(),      folder.getType(),        folder.getHref(), folder.name(),
            folder.parent(),     folder.visible(),        folder.status(),  folder.isMember(),
            folder.membership(), folder.allowedActions(), folder.type()};
}

PlainRelationship plain(const RelationshipData& relationship) {
    return {relationship.getId(),       relationship.getType(),         relationship.getHref(),
            relationship.fromUrn(),     relationship.toUrn(),           relationship.sourceFromUrn(),
            relationship.sourceToUrn(), relationship.relationshipType()};
}

template <class Record>
auto plainRecordsOf(const FullAssemblyDataV3& document) {
    std::map<std::string, std::shared_ptr<decltype(plain(std::declval<Record>()))>> records;
    for (const auto& [id, record] : recordsOf(document, static_cast<const Record*>(nullptr)))
        records[id] = std::make_shared<decltype(plain(*record))>(plain(*record));
    return records;
}

PlainAssembly plain(const FullAssemblyDataV3& document) {
    PlainAssembly assembly;
    assembly.id = document.getId();
    assembly.type = document.getType();
    assembly.inaccessibleParents = document.getInaccessibleParents();
    assembly.restrictedParents = document.getRestrictedParents();
    for (const auto& [id, project] : document.getProjectDetails())
        assembly.projects.push_back(plain(project));
    for (const auto& [id, name] : document.getAllReferencedFiles())
        assembly.files.try_emplace(id, plain(*document.getFileById(id)));
    assembly.versions = plainRecordsOf<VersionData>(document);
    assembly.folders = plainRecordsOf<FolderData>(document);
    for (const auto& relationship : document.getAllRelationships())
        assembly.relationships.push_back(std::make_shared<PlainRelationship>(plain(*relationship)));
    assembly.directReferencedFiles = document.getDirectReferencedFiles();
    return assembly;
}

template <class... Fields>
std::size_t hashOf(const Fields&... fields) {
    std::size_t seed = 0;
    (boost::hash_combine(seed, fields), ...);
    return seed;
}

std::size_t hash(const PlainFile& file) {
    return hashOf(file.id, file.type, file.name, file.parentId, file.parentType, file.subTypes.has_value(),
                  file.subTypes.value_or(""));
}

std::size_t hash(const PlainProject& project) {
    return hashOf(project.id, project.type, project.href, project.name, project.parent, project.visible, project.status,
                  project.membership, project.isMember == "true", project.role, project.communityType);
}

std::size_t hash(const std::shared_ptr<PlainVersion>& version) {
    return hashOf(version->id, version->type, version->name, version->fileId, version->title);
}

std::size_t hash(const std::shared_ptr<PlainFolder>& folder) {
    return hashOf(folder->id, folder->type, folder->href, folder->name, folder->parent, folder->visible, folder->status,
                  folder->isMember, folder->membership, folder->allowedActions, folder->containerType);
}

std::size_t hash(const std::shared_ptr<PlainRelationship>& relationship) {
    return hashOf(relationship->id, relationship->type, relationship->href, relationship->fromUrn, relationship->toUrn,
                  relationship->sourceFromUrn, relationship->sourceToUrn, relationship->relationshipType);
}

template <class Records>
std::size_t hashRecords(const Records& records) {
    std::size_t seed = records.size();
    for (const auto& [id, record] : records)
        boost::hash_combine(seed, hashOf(id, hash(record)));
    return seed;
}

std::map<std::string, PlainProject> byId(const std::vector<PlainProject>& projects) {
    std::map<std::string, PlainProject> sorted;
    for (const PlainProject& project : projects)
        sorted.try_emplace(project.id, project);
    return sorted;
}

} // namespace

std::size_t checksum(const PlainAssembly& assembly) {
    std::size_t seed = hashOf(assembly.id, assembly.type, assembly.inaccessibleParents, assembly.restrictedParents,
                              hashRecords(byId(assembly.projects)), hashRecords(assembly.files),
                              hashRecords(assembly.versions), hashRecords(assembly.folders));
    for (const auto& relationship : assembly.relationships)
        boost::hash_combine(seed, hash(relationship));
    const std::map<std::string, std::wstring> directReferences(assembly.directReferencedFiles.begin(),
                                                               assembly.directReferencedFiles.end());
    return hashOf(seed, directReferences);
}

std::size_t checksum(const FullAssemblyDataV3& document) {
    return checksum(plain(document));
}

} // namespace OrvaneBenchmarks

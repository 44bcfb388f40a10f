#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include "Base/QxBaseCore10/Strings.h"
#include "Server/Orvane/Payloads/Detail/JSONReading.h"
#include "Server/Orvane/Payloads/Detail/Texts.h"

#include <utility>

namespace Orvane::Payloads {

FullAssemblyDataV3::FullAssemblyDataV3() = default;

FullAssemblyDataV3::FullAssemblyDataV3(const Qx::JSONNode& root) : FullAssemblyData(root) {
    const auto data = child(root, "data");
    const auto included = child(root, "included");
    // Versions come before relationships, which look them up.
    if (included)
        readVersions(*included);
    if (data)
        readRelationships(*data);
    if (included)
        readFolders(*included);
}

void FullAssemblyDataV3::readVersions(const Qx::JSONNode& included) {
    forEachElement(included, "versions", [this](const Qx::JSONNode& element) {
        auto version = std::make_shared<VersionData>(element);
        versions_.insert_or_assign(version->getId(), std::move(version));
    });
}

void FullAssemblyDataV3::readRelationships(const Qx::JSONNode& data) {
    const std::string ownVersionId = getId();
    forEachElement(data, "relationships", [&](const Qx::JSONNode& element) {
        auto relationship = std::make_shared<RelationshipData>(element);
        addDirectReference(*relationship, ownVersionId);
        relationships_.push_back(std::move(relationship));
    });
}

void FullAssemblyDataV3::addDirectReference(const RelationshipData& relationship, const std::string& ownVersionId) {
    const bool leadsFromHere = relationship.fromUrn() == ownVersionId;
    if (!leadsFromHere && relationship.toUrn() != ownVersionId)
        return;
    const auto version = getVersionById(leadsFromHere ? relationship.toUrn() : relationship.fromUrn());
    if (!version || version->getFileId().empty() || version->getTitle().empty())
        return;
    directReferencedFiles_.try_emplace(version->getFileId(), Qx::ToIString(version->getTitle()));
}

void FullAssemblyDataV3::readFolders(const Qx::JSONNode& included) {
    forEachElement(included, "folders", [this](const Qx::JSONNode& element) {
        auto folder = std::make_shared<FolderData>(element);
        if (folder->getType() == Texts::folders)
            folders_.insert_or_assign(folder->getId(), std::move(folder));
    });
}

FullAssemblyDataV3::FullAssemblyDataV3(const FullAssemblyDataV3& other) = default;

FullAssemblyDataV3::FullAssemblyDataV3(FullAssemblyDataV3&& other)
    : FullAssemblyData(other),
      versions_(std::exchange(other.versions_, {})),
      folders_(std::exchange(other.folders_, {})),
      relationships_(std::exchange(other.relationships_, {})),
      directReferencedFiles_(std::exchange(other.directReferencedFiles_, {})) {}

FullAssemblyDataV3& FullAssemblyDataV3::operator=(const FullAssemblyDataV3& other) = default;

FullAssemblyDataV3& FullAssemblyDataV3::operator=(FullAssemblyDataV3&& other) {
    if (this == &other)
        return *this;
    FullAssemblyData::operator=(other);
    versions_ = std::exchange(other.versions_, {});
    folders_ = std::exchange(other.folders_, {});
    relationships_ = std::exchange(other.relationships_, {});
    directReferencedFiles_ = std::exchange(other.directReferencedFiles_, {});
    return *this;
}

FullAssemblyDataV3::~FullAssemblyDataV3() = default;

} // namespace Orvane::Payloads

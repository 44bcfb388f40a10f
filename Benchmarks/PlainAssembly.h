#pragma once

#include "Base/QxBaseCore10/CloudBrowser.h"
#include "Server/Orvane/Payloads/ContainerStatus.h"
#include "Server/Orvane/Payloads/ContainerType.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

// The library's document and records as plain structures of the same shape, for readers that do not
// use the library.
namespace OrvaneBenchmarks {

using Orvane::Payloads::ContainerStatus;
using Orvane::Payloads::ContainerType;
using Qx::CloudBrowser::Relationship::RelationType;

struct PlainFile {
    std::string id;
    std::string type;
    std::wstring name;
    std::string parentId;
    ContainerType parentType = ContainerType::OTHER;
    std::optional<std::string> subTypes;
};

struct PlainProject {
    std::string id;
    std::string type;
    std::string href;
    std::wstring name;
    std::string parent;
    bool visible = false;
    ContainerStatus status = ContainerStatus::ACTIVE;
    std::string membership;
    std::string isMember;
    std::string role;
    std::string communityType;
};

struct PlainVersion {
    std::string id;
    std::string type;
    std::string name;
    std::string fileId;
    std::string title;
};

struct PlainFolder {
    std::string id;
    std::string type;
    std::string href;
    std::string name;
    std::string parent;
    bool visible = false;
    ContainerStatus status = ContainerStatus::UNSET;
    bool isMember = false;
    std::string membership;
    std::set<std::string> allowedActions;
    ContainerType containerType = ContainerType::OTHER;
};

struct PlainRelationship {
    std::string id;
    std::string type;
    std::string href;
    std::string fromUrn;
    std::string toUrn;
    std::string sourceFromUrn;
    std::string sourceToUrn;
    RelationType relationshipType = RelationType::OTHER;
};

struct PlainAssembly {
    std::string id;
    std::string type;
    std::string href;
    std::int32_t inaccessibleParents = 0;
    std::int32_t restrictedParents = 0;
    std::vector<PlainProject> projects;
    std::map<std::string, PlainFile> files;
    std::map<std::string, std::shared_ptr<PlainVersion>> versions;
    std::map<std::string, std::shared_ptr<PlainFolder>> folders;
    std::vector<std::shared_ptr<PlainRelationship>> relationships;
    std::unordered_map<std::string, std::wstring> directReferencedFiles;
};

} // namespace OrvaneBenchmarks

#include "Benchmarks/PlainRules.h"

#include "Base/QxBaseCore10/Strings.h"

namespace OrvaneBenchmarks {

ContainerType containerTypeOf(std::string_view text) {
    if (text == "PROJECT" || text == "projects")
        return ContainerType::PROJECT;
    return text == "FOLDER" || text == "folders" ? ContainerType::FOLDER : ContainerType::OTHER;
}

ContainerStatus containerStatusOf(std::string_view text) {
    if (text == "Active")
        return ContainerStatus::ACTIVE;
    if (text == "Archived")
        return ContainerStatus::ARCHIVED;
    if (text == "Inactive")
        return ContainerStatus::INACTIVE;
    return text == "Deleted" ? ContainerStatus::DELETED : ContainerStatus::OTHER;
}

RelationType relationTypeOf(std::string_view text) {
    if (text == "DERIVED")
        return RelationType::DERIVED;
    if (text == "DEPENDENCY")
        return RelationType::DEPENDENCY;
    if (text == "AUXILIARY")
        return RelationType::AUXILIARY;
    return text == "XREF" ? RelationType::XREF : RelationType::OTHER;
}

void findDirectReferences(PlainAssembly& assembly) {
    for (const auto& relationship : assembly.relationships) {
        const bool leadsFromHere = relationship->fromUrn == assembly.id;
        if (!leadsFromHere && relationship->toUrn != assembly.id)
            continue;
        const auto found = assembly.versions.find(leadsFromHere ? relationship->toUrn : relationship->fromUrn);
        if (found == assembly.versions.end())
            continue;
        const PlainVersion& version = *found->second;
        if (!version.fileId.empty() && !version.title.empty())
            assembly.directReferencedFiles.try_emplace(version.fileId, Qx::ToIString(version.title));
    }
}

} // namespace OrvaneBenchmarks

#include "Server/Orvane/Payloads/Detail/Conversions.h"

#include "Server/Orvane/Payloads/Detail/Texts.h"

#include <array>
#include <string_view>
#include <utility>

namespace Orvane::Payloads {

namespace {

using Qx::CloudBrowser::Relationship::RelationType;

template <class Enumerator, std::size_t size>
using Table = std::array<std::pair<std::string_view, Enumerator>, size>;

constexpr Table<ContainerType, 4> containerTypes{{
    {Texts::project, ContainerType::PROJECT},
    {Texts::projects, ContainerType::PROJECT},
    {Texts::folder, ContainerType::FOLDER},
    {Texts::folders, ContainerType::FOLDER},
}};

constexpr Table<ContainerStatus, 4> containerStatuses{{
    {Texts::active, ContainerStatus::ACTIVE},
    {Texts::archived, ContainerStatus::ARCHIVED},
    {Texts::inactive, ContainerStatus::INACTIVE},
    {Texts::deleted, ContainerStatus::DELETED},
}};

constexpr Table<RelationType, 4> relationTypes{{
    {Texts::derived, RelationType::DERIVED},
    {Texts::dependency, RelationType::DEPENDENCY},
    {Texts::auxiliary, RelationType::AUXILIARY},
    {Texts::xref, RelationType::XREF},
}};

template <class Enumerator, std::size_t size>
Enumerator fromString(const Table<Enumerator, size>& table, const std::string& text) {
    for (const auto& [known, enumerator] : table)
        if (known == text)
            return enumerator;
    return Enumerator::OTHER;
}

} // namespace

ContainerType containerTypeFromString(const std::string& text) {
    return fromString(containerTypes, text);
}

ContainerStatus containerStatusFromString(const std::string& text) {
    return fromString(containerStatuses, text);
}

RelationType relationTypeFromString(const std::string& text) {
    return fromString(relationTypes, text);
}

} // namespace Orvane::Payloads

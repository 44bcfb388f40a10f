#pragma once

#include "Base/QxBaseCore10/CloudBrowser.h"
#include "Server/Orvane/Payloads/Data.h"
#include "Server/Orvane/Payloads/Links.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <string>

namespace Orvane::Payloads {

/// One relationship between two file versions. A plain value; may be read from several threads at
/// once.
///
/// References that accessors return are valid until the record is assigned to or destroyed.
class QXORVANEDM10_EXPORT RelationshipData : public Data, public Links {
public:
    /// The kinds of relationship.
    using RelationType = Qx::CloudBrowser::Relationship::RelationType;

    /// Reads one element of "data.relationships". If the "type" of the node is not "relationships",
    /// reads only "id", "type" and "self". If a key is missing, its field keeps its default. Where
    /// text is expected, a number or boolean is converted to text; an object, an array or null
    /// leaves the default too. The link is "self" of the node itself, not "links.self".
    explicit RelationshipData(const Qx::JSONNode& node);

    /// Returns "relationships".
    static std::string dataType();

    /// The value of "fromUrn.id": the id of the version at one end; empty by default.
    const std::string& fromUrn() const;

    /// The value of "toUrn.id": the id of the version at the other end; empty by default.
    const std::string& toUrn() const;

    /// The value of "sourceFromUrn.id"; empty by default.
    const std::string& sourceFromUrn() const;

    /// The value of "sourceToUrn.id"; empty by default.
    const std::string& sourceToUrn() const;

    /// The value of "relationshipType"; `OTHER` by default.
    RelationType relationshipType() const;

private:
    std::string fromUrn_;
    std::string toUrn_;
    std::string sourceFromUrn_;
    std::string sourceToUrn_;
    RelationType relationshipType_ = RelationType::OTHER;
};

} // namespace Orvane::Payloads

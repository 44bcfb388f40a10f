#pragma once

#include "Base/QxBaseCore10/CloudBrowser.h"
#include "Server/Orvane/Payloads/Data.h"
#include "Server/Orvane/Payloads/Links.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <string>

namespace Orvane::Payloads {

/// One relationship between two versions of files. A plain value; may be read from several threads at once.
///
/// References that accessors give are good until the record is assigned to or destroyed.
class QXORVANEDM10_EXPORT RelationshipData : public Data, public Links {
public:
    using RelationType = Qx::CloudBrowser::Relationship::RelationType;

    /// Reads one element of "data.relationships". A node whose "type" is not "relationships" gives its "id",
    /// "type" and "self" alone; a key that is missing leaves its field as it is by default. Where a text is expected a
    /// number or boolean is taken as one; an object, an array or null leaves the field too. The link is "self" of the
    /// node itself.
    explicit RelationshipData(const Qx::JSONNode& node);

    /// "relationships".
    static std::string dataType();

    /// The key "fromUrn.id": the version at the one end; empty by default.
    const std::string& fromUrn() const;

    /// The key "toUrn.id": the version at the other end; empty by default.
    const std::string& toUrn() const;

    /// The key "sourceFromUrn.id"; empty by default.
    const std::string& sourceFromUrn() const;

    /// The key "sourceToUrn.id"; empty by default.
    const std::string& sourceToUrn() const;

    /// The key "relationshipType"; `OTHER` by default.
    RelationType relationshipType() const;

private:
    std::string fromUrn_;
    std::string toUrn_;
    std::string sourceFromUrn_;
    std::string sourceToUrn_;
    RelationType relationshipType_ = RelationType::OTHER;
};

} // namespace Orvane::Payloads

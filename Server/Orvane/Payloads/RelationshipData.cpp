#include "Server/Orvane/Payloads/RelationshipData.h"

#include "Server/Orvane/Payloads/Detail/Conversions.h"
#include "Server/Orvane/Payloads/Detail/JSONReading.h"
#include "Server/Orvane/Payloads/Detail/Texts.h"

namespace Orvane::Payloads {

RelationshipData::RelationshipData(const Qx::JSONNode& node) : Data(node), Links(node) {
    if (getType() != Texts::relationships)
        return;
    fromUrn_ = idOf(node, "fromUrn");
    toUrn_ = idOf(node, "toUrn");
    sourceFromUrn_ = idOf(node, "sourceFromUrn");
    sourceToUrn_ = idOf(node, "sourceToUrn");
    relationshipType_ = relationTypeFromString(readText(node, "relationshipType"));
}

std::string RelationshipData::dataType() {
    return std::string(Texts::relationships);
}

const std::string& RelationshipData::fromUrn() const {
    return fromUrn_;
}

const std::string& RelationshipData::toUrn() const {
    return toUrn_;
}

const std::string& RelationshipData::sourceFromUrn() const {
    return sourceFromUrn_;
}

const std::string& RelationshipData::sourceToUrn() const {
    return sourceToUrn_;
}

RelationshipData::RelationType RelationshipData::relationshipType() const {
    return relationshipType_;
}

} // namespace Orvane::Payloads

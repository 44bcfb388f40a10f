#include "Fuzz/PlainReading.h"

#include "Fuzz/Require.h"

#include <array>
#include <charconv>
#include <optional>
#include <rapidjson/document.h>
#include <set>

namespace OrvaneFuzz {

namespace {

using rapidjson::Value;
using Fields = std::map<std::string, std::string>;

// The first member of that key; none if this is no object.
const Value* member(const Value& value, const char* key) {
    if (!value.IsObject())
        return nullptr;
    const auto found = value.FindMember(key);
    return found == value.MemberEnd() ? nullptr : &found->value;
}

std::optional<std::string> asText(const Value& value) {
    if (value.IsString())
        return std::string(value.GetString(), value.GetStringLength());
    if (value.IsBool())
        return value.GetBool() ? "true" : "false";
    if (value.IsInt64())
        return std::to_string(value.GetInt64());
    if (value.IsUint64())
        return std::to_string(value.GetUint64());
    if (!value.IsDouble())
        return std::nullopt;
    std::array<char, 64> buffer{};
    return std::string(buffer.data(), std::to_chars(buffer.begin(), buffer.end(), value.GetDouble()).ptr);
}

// The text under `key`; empty if there is none.
std::string textAt(const Value& value, const char* key) {
    const Value* found = member(value, key);
    return found ? asText(*found).value_or("") : "";
}

std::string textAt(const Value& value, const char* key, const char* innerKey) {
    const Value* found = member(value, key);
    return found ? textAt(*found, innerKey) : "";
}

std::string flagAt(const Value& value, const char* key) {
    const Value* found = member(value, key);
    return found && found->IsBool() && found->GetBool() ? "yes" : "no";
}

std::string numberAt(const Value& value, const char* key) {
    const Value* found = member(value, key);
    return found && found->IsInt() ? std::to_string(found->GetInt()) : "0";
}

std::vector<const Value*> elementsAt(const Value& value, const char* key, const char* innerKey) {
    std::vector<const Value*> elements;
    const Value* outer = member(value, key);
    const Value* found = outer ? member(*outer, innerKey) : nullptr;
    if (found && found->IsArray())
        for (const Value& element : found->GetArray())
            elements.push_back(&element);
    return elements;
}

std::string containerType(const std::string& text) {
    if (text == "PROJECT" || text == "projects")
        return "2";
    return text == "FOLDER" || text == "folders" ? "1" : "0";
}

std::string containerStatus(const std::string& text) {
    if (text == "Active")
        return "0";
    if (text == "Archived")
        return "1";
    if (text == "Inactive")
        return "2";
    return text == "Deleted" ? "3" : "4";
}

std::string relationType(const std::string& text) {
    if (text == "DERIVED")
        return "1";
    if (text == "DEPENDENCY")
        return "2";
    if (text == "XREF")
        return "3";
    return text == "AUXILIARY" ? "4" : "0";
}

Fields readIdentity(const Value& value) {
    return {{"id", textAt(value, "id")}, {"type", textAt(value, "type")}};
}

Fields readProject(const Value& value) {
    Fields fields = readIdentity(value);
    fields["name"] = textAt(value, "name");
    fields["parent"] = textAt(value, "parent");
    fields["visible"] = flagAt(value, "visible");
    fields["status"] = member(value, "status") ? containerStatus(textAt(value, "status")) : "0";
    fields["membership"] = textAt(value, "me", "membership");
    fields["role"] = textAt(value, "me", "role");
    fields["isMember"] = textAt(value, "me", "isMember") == "true" ? "yes" : "no";
    fields["href"] = textAt(value, "links", "self");
    fields["communityType"] = textAt(value, "communityType");
    return fields;
}

Fields readFile(const Value& value) {
    Fields fields = readIdentity(value);
    fields["name"] = textAt(value, "name");
    fields["parentType"] = containerType(textAt(value, "parent", "type"));
    fields["parentId"] = fields["parentType"] == "2" ? textAt(value, "project", "id") : textAt(value, "parent", "id");
    const Value* attributes = member(value, "attributes");
    if (!attributes)
        return fields;
    if (const Value* subTypes = member(*attributes, "subTypes"); subTypes && member(*subTypes, "value"))
        fields["subTypes"] = textAt(*subTypes, "value");
    if (!fields.contains("subTypes") || fields["subTypes"] != "Configuration")
        return fields;
    if (const Value* project = member(*attributes, "configuredDesignProjectId"); project && member(*project, "value"))
        fields["parentId"] = textAt(*project, "value");
    return fields;
}

Fields readVersion(const Value& value) {
    Fields fields = readIdentity(value);
    if (fields["type"] != "versions")
        return fields;
    fields["title"] = textAt(value, "title");
    fields["fileId"] = textAt(value, "file", "id");
    return fields;
}

Fields readRelationship(const Value& value) {
    Fields fields = readIdentity(value);
    fields["href"] = textAt(value, "self");
    const bool isOne = fields["type"] == "relationships";
    for (const char* end : {"fromUrn", "toUrn", "sourceFromUrn", "sourceToUrn"})
        fields[end] = isOne ? textAt(value, end, "id") : "";
    fields["relationshipType"] = isOne ? relationType(textAt(value, "relationshipType")) : "0";
    return fields;
}

Fields readFolder(const Value& value) {
    Fields fields = readIdentity(value);
    fields["href"] = textAt(value, "links", "self");
    fields["name"] = textAt(value, "name");
    fields["parent"] = textAt(value, "parent");
    fields["visible"] = flagAt(value, "visible");
    fields["status"] = containerStatus(textAt(value, "status"));
    fields["containerType"] = containerType(textAt(value, "containerType"));
    fields["isMember"] = textAt(value, "me", "isMember") == "true" ? "yes" : "no";
    fields["membership"] = textAt(value, "me", "membership");
    return fields;
}

std::vector<std::string> readActions(const Value& folder) {
    std::set<std::string> actions;
    for (const Value* action : elementsAt(folder, "me", "allowed-actions"))
        actions.insert(asText(*action).value_or(""));
    return {actions.begin(), actions.end()};
}

} // namespace

PlainReading::PlainReading(const std::string& body) {
    rapidjson::Document root;
    root.Parse<rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag>(body.data(), body.size());
    require(!root.HasParseError(), "the body is JSON");
    const Value none;
    const Value* data = member(root, "data");
    data_ = readIdentity(data ? *data : none);
    data_["inaccessible"] = numberAt(data ? *data : none, "inaccessibleProjects");
    data_["restricted"] = numberAt(data ? *data : none, "restrictedProjects");
    for (const Value* project : elementsAt(root, "included", "projects"))
        if (textAt(*project, "type") == "projects")
            projects_.push_back(readProject(*project));
    for (const Value* file : elementsAt(root, "included", "files"))
        if (textAt(*file, "type") == "files")
            files_.try_emplace(textAt(*file, "id"), readFile(*file));
    for (const Value* version : elementsAt(root, "included", "versions"))
        versions_[textAt(*version, "id")] = readVersion(*version);
    for (const Value* element : elementsAt(root, "data", "relationships")) {
        Fields relationship = readRelationship(*element);
        relationships_.push_back(relationship);
        std::string other;
        if (relationship["fromUrn"] == data_["id"])
            other = relationship["toUrn"];
        else if (relationship["toUrn"] == data_["id"])
            other = relationship["fromUrn"];
        else
            continue;
        if (Fields version = versions_.contains(other) ? versions_[other] : Fields();
            !version["fileId"].empty() && !version["title"].empty())
            titles_.try_emplace(version["fileId"], version["title"]);
    }
    for (const Value* folder : elementsAt(root, "included", "folders"))
        if (textAt(*folder, "type") == "folders") {
            folders_[textAt(*folder, "id")] = readFolder(*folder);
            actions_[textAt(*folder, "id")] = readActions(*folder);
        }
}

} // namespace OrvaneFuzz

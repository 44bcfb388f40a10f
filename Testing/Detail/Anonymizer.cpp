#include "Testing/Detail/Anonymizer.h"

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Status.h"
#include "Base/QxBaseCore10/Uri.h"
#include "Testing/Detail/JSONRewriter.h"
#include "Testing/Endpoint.h"

#include <algorithm>
#include <array>
#include <boost/json/serialize.hpp>
#include <fmt/format.h>
#include <optional>

namespace Orvane::Testing::Detail {

namespace {

using Qx::HTTPResponse;

// The keys whose values are the service's own words.
constexpr std::array<std::string_view, 10> wordKeys{"type",     "status",         "containerType", "membership",
                                                    "role",     "isMember",       "communityType", "relationshipType",
                                                    "subTypes", "allowed-actions"};

// The service's words that are not in upper case.
constexpr std::array<std::string_view, 17> words{
    "files", "folders", "projects", "relationships", "versions", "Active", "Archived", "Inactive",     "Deleted",
    "true",  "false",   "view",     "read",          "write",    "edit",   "delete",   "Configuration"};

// All other keys that the library reads, and those of error messages.
constexpr std::array<std::string_view, 28> otherKeys{"data",
                                                     "included",
                                                     "projects",
                                                     "files",
                                                     "folders",
                                                     "versions",
                                                     "id",
                                                     "relationships",
                                                     "name",
                                                     "title",
                                                     "parent",
                                                     "project",
                                                     "value",
                                                     "attributes",
                                                     "links",
                                                     "self",
                                                     "me",
                                                     "configuredDesignProjectId",
                                                     "file",
                                                     "fromUrn",
                                                     "toUrn",
                                                     "sourceFromUrn",
                                                     "sourceToUrn",
                                                     "visible",
                                                     "restrictedProjects",
                                                     "inaccessibleProjects",
                                                     "errors",
                                                     "detail"};

constexpr std::array<std::string_view, 15> extensions{".asm", ".prt", ".cfg", ".drw", ".step", ".stp", ".iges", ".igs",
                                                      ".dwg", ".dxf", ".pdf", ".stl", ".obj",  ".zip", ".txt"};

constexpr std::string_view digits = "0123456789";
constexpr std::string_view capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ_";

template <std::size_t count>
bool isOneOf(std::string_view text, const std::array<std::string_view, count>& all) {
    return std::find(all.begin(), all.end(), text) != all.end();
}

bool consistsOf(std::string_view text, std::string_view characters) {
    return !text.empty() && text.find_first_not_of(characters) == std::string_view::npos;
}

bool isWord(std::string_view text) {
    constexpr std::size_t statusDigits = 3;
    return isOneOf(text, words) || consistsOf(text, capitals) ||
           (consistsOf(text, digits) && text.size() <= statusDigits);
}

bool isIdKey(std::string_view key) {
    return key == "id" || key.ends_with("Id") || key.ends_with("ID") || key.ends_with("_id") || key.ends_with("Urn");
}

// Returns everything before the last part of a URN if it is one of the service's, and a made-up
// prefix otherwise.
std::string_view prefixOf(std::string_view urn) {
    for (const std::string_view prefix :
         {"urn:vrnk.dorlqa:fs.file:", "urn:vrnk.dorlqa:fs.folder:", "urn:vrnk.dorlqa:dm.lineage:"})
        if (urn.starts_with(prefix))
            return prefix;
    return "urn:made-up:";
}

// Returns the part of a URN that names a version, such as "?version=7"; empty if there is none.
std::string_view versionOf(std::string_view urn) {
    constexpr std::string_view key = "?version=";
    const std::string_view rest = urn.substr(std::min(urn.find(key), urn.size()));
    return consistsOf(rest.substr(std::min(key.size(), rest.size())), digits) ? rest : std::string_view();
}

std::string_view extensionOf(std::string_view name) {
    for (const std::string_view extension : extensions)
        if (name.ends_with(extension))
            return extension;
    return {};
}

HTTPResponse::Headers headersFor(const HTTPResponse& response) {
    HTTPResponse::Headers headers;
    const std::string type = response.getHeader("Content-Type").value_or("");
    if (!type.empty())
        headers.emplace_back("Content-Type", type.substr(0, type.find(';')));
    const std::string seconds = response.getHeader("Retry-After").value_or("");
    if (consistsOf(seconds, digits))
        headers.emplace_back("Retry-After", seconds);
    return headers;
}

} // namespace

Anonymizer::Anonymizer(std::size_t first) : first_(first) {}

Exchange Anonymizer::replaceIn(const Exchange& exchange) {
    Exchange replaced = exchange;
    const HTTPResponse& response = exchange.response;
    replaced.url = urlFor(exchange);
    replaced.response = response.getStatus() == 0
                            ? HTTPResponse::transportFailure(response.getFailureKind(), "")
                            : HTTPResponse(response.getStatus(), bodyFor(response.getBody()), headersFor(response));
    return replaced;
}

std::string Anonymizer::urlFor(const Exchange& exchange) {
    const auto endpoint = Endpoint::of(exchange.method, exchange.url);
    if (!endpoint)
        return "https://service.example/" + numberOf(exchange.url);
    const std::string urn = Qx::Uri::UriEncode(idFor(endpoint->urn));
    switch (endpoint->kind) {
    case Endpoint::Kind::FOLDER_CONTENTS:
        return "https://service.example/folders/" + urn + "/content";
    case Endpoint::Kind::FULL_ASSEMBLY:
        return "https://service.example/versions/" + urn + "/fullassembly";
    case Endpoint::Kind::FULL_ASSEMBLY_ACCESS:
        break;
    }
    return "https://service.example/versions/" + urn + "/fullassembly/access";
}

std::string Anonymizer::bodyFor(std::string_view body) {
    Qx::Status status;
    const auto root = Qx::JSONNode::parse(body, status);
    if (!root)
        return std::string(body.size(), 'x');
    const std::string json = root->toText();
    // Text that is an id in one place is treated as an id everywhere.
    ids_.clear();
    const auto keepId = [this](const std::string& text, std::string_view key) {
        if (isIdKey(key))
            ids_.insert(text);
        return std::string("0");
    };
    rewriteJSON(json, {[](const std::string& key) { return key; }, keepId, keepId});
    return rewriteJSON(json, {[this](const std::string& key) { return keyFor(key); },
                              [this](const std::string& text, std::string_view key) { return textFor(text, key); },
                              [this](const std::string& text, std::string_view key) { return numberFor(text, key); }});
}

std::string Anonymizer::keyFor(const std::string& key) {
    return isOneOf(key, wordKeys) || isOneOf(key, otherKeys) ? key : "key " + numberOf(key);
}

std::string Anonymizer::textFor(const std::string& text, std::string_view key) {
    if (text.empty() || (isOneOf(key, wordKeys) && isWord(text)))
        return text;
    if (isIdKey(key) || ids_.contains(text) || text.starts_with("urn:") || consistsOf(text, digits))
        return idFor(text);
    return "name " + numberOf(text) + std::string(extensionOf(text));
}

std::string Anonymizer::numberFor(const std::string& text, std::string_view key) {
    if (!isIdKey(key) && !ids_.contains(text))
        return text;
    const std::string id = idFor(text);
    return consistsOf(id, digits) ? id : boost::json::serialize(boost::json::string_view(id));
}

std::string Anonymizer::idFor(const std::string& text) {
    if (text.starts_with("urn:")) {
        const std::string_view version = versionOf(text);
        const std::string_view name = std::string_view(text).substr(0, text.size() - version.size());
        return std::string(prefixOf(text)) + numberOf(std::string(name.substr(name.rfind(':') + 1))) +
               std::string(version);
    }
    // A number is as long as the service's ids, so that it can't equal a number that is kept.
    return consistsOf(text, digits) ? fmt::format("9{:0>15}", numberOf(text)) : "id-" + numberOf(text);
}

std::string Anonymizer::numberOf(const std::string& text) {
    return std::to_string(numbers_.try_emplace(text, first_ + numbers_.size()).first->second);
}

} // namespace Orvane::Testing::Detail

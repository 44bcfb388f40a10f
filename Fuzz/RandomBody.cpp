#include "Fuzz/RandomBody.h"

#include <algorithm>
#include <cctype>

namespace OrvaneFuzz {

namespace {

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

// The same key, with its first letter as an escape.
std::string escaped(const std::string& key) {
    constexpr const char* digits = "0123456789abcdef";
    const auto letter = static_cast<unsigned char>(key.front());
    return std::string("\\u00") + digits[letter / 16] + digits[letter % 16] + key.substr(1);
}

} // namespace

// Few, so that records meet, and some for more than one kind.
const std::vector<std::string>& RandomBody::ids() {
    static const std::vector<std::string> ids{
        "",       "a",        "version-1", "version-2", "version-3", "file-1",    "file-2",
        "file-3", "folder-1", "folder-2",  "folder-3",  "project-1", "project-2", "project-3",
        "shared", "shared-1", "shared-2",  "shared-3",  "true",      "1",         "a?version=2"};
    return ids;
}

bool RandomBody::chance(int percent) {
    return below(100) < static_cast<std::size_t>(percent);
}

std::size_t RandomBody::below(std::size_t limit) {
    return random_() % limit;
}

const std::string& RandomBody::pick(const std::vector<std::string>& texts) {
    return texts[below(texts.size())];
}

std::string RandomBody::number() {
    static const std::vector<std::string> numbers{"0",
                                                  "1",
                                                  "-1",
                                                  "3",
                                                  "2147483647",
                                                  "2147483648",
                                                  "-2147483648",
                                                  "-2147483649",
                                                  "4294967297",
                                                  "1.0",
                                                  "1.5",
                                                  "-0.0",
                                                  "1e3",
                                                  "9223372036854775807",
                                                  "18446744073709551615",
                                                  "-9223372036854775808",
                                                  "1e-300",
                                                  "1e22",
                                                  "0.1",
                                                  "123.456",
                                                  "1E+5",
                                                  "5e-324",
                                                  "1.7976931348623157e308"};
    return pick(numbers);
}

std::string RandomBody::anyText() {
    static const std::vector<std::string> pieces{"",        "a",   "Name",   " ",      "\\u0000",    "\\\"",
                                                 "\\\\",    "\\n", "\u00e9", "\u6b6f", "\U0001f600", "\\ud83d\\ude00",
                                                 "\\u00e9", "\\/", "\uffff"};
    std::string text;
    while (chance(60))
        text += pick(pieces);
    return quoted(text);
}

std::string RandomBody::anyValue() {
    switch (below(10)) {
    case 0:
        return "null";
    case 1:
        return "true";
    case 2:
        return "false";
    case 3:
        return number();
    case 4:
        return anyText();
    case 5:
        return "[]";
    case 6:
        return "{}";
    case 7:
        return '[' + reference("shared") + ",1]";
    case 8:
        return pick({"\"true\"", "\"3\"", "\"null\""});
    default:
        return reference("shared");
    }
}

// One of the words that are known, or one that is almost so.
std::string RandomBody::word(const std::vector<std::string>& known) {
    std::string text = pick(known);
    switch (below(20)) {
    case 0:
        return quoted(text + 's');
    case 1:
        return quoted(' ' + text);
    case 2:
        return quoted(text.substr(0, text.size() / 2));
    case 3:
        std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
        return quoted(text);
    case 4:
        std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
        return quoted(text);
    default:
        return quoted(text);
    }
}

// Mostly one of three of the kind, so that records find each other and meet again.
std::string RandomBody::id(const std::string& kind) {
    return quoted(chance(85) ? kind + pick({"-1", "-1", "-2", "-3"}) : pick(ids()));
}

std::string RandomBody::object(Members members) {
    std::string text;
    const auto add = [&](const std::string& key, const std::string& value) {
        text += (text.empty() ? "" : ",") + quoted(chance(3) ? escaped(key) : key) + ':' + value;
    };
    if (chance(20))
        std::shuffle(members.begin(), members.end(), random_);
    for (const auto& [key, value] : members) {
        if (chance(8))
            continue;
        if (chance(3))
            add(key, anyValue());
        if (chance(4))
            add(key, "null");
        else
            add(key, chance(6) ? anyValue() : value);
        if (chance(3))
            add(key, value);
        if (chance(5))
            add(pick({"other", "id", "self", "links", "inaccessibleProjects", "files"}), anyValue());
    }
    return '{' + text + '}';
}

std::string RandomBody::array(const MakeElement& makeElement) {
    std::string text;
    while (chance(78))
        text += (text.empty() ? "" : ",") + (chance(4) ? anyValue() : makeElement());
    return '[' + text + ']';
}

std::string RandomBody::links() {
    return object({{"self", anyText()}});
}

std::string RandomBody::me() {
    static const std::vector<std::string> booleans{"true", "false", "\"true\"", "\"false\"", "\"True\""};
    const auto action = [this] { return word({"read", "view", "write", "zelvar:ft:share"}); };
    return object({{"isMember", pick(booleans)},
                   {"membership", word({"MEMBER", "NOT_A_MEMBER", ""})},
                   {"role", word({"VIEWER", "PROJECT_ADMIN"})},
                   {"allowed-actions", array(action)}});
}

std::string RandomBody::reference(const std::string& kind) {
    return object({{"id", id(kind)}, {"type", word({"versions", "folders", "projects", "FOLDER", "PROJECT"})}});
}

std::string RandomBody::type(const std::string& right) {
    return chance(92) ? quoted(right) : word({"files", "folders", "projects", "versions", "relationships", ""});
}

std::string RandomBody::project() {
    return object({{"id", id("project")},
                   {"type", type("projects")},
                   {"name", anyText()},
                   {"parent", id("folder")},
                   {"visible", chance(50) ? "true" : "false"},
                   {"status", word({"Active", "Active", "Archived", "Inactive", "Deleted"})},
                   {"me", me()},
                   {"links", links()},
                   {"communityType", word({"CONTROLLED", "OPEN", ""})}});
}

std::string RandomBody::file() {
    const std::string attributes =
        object({{"subTypes", object({{"value", word({"Configuration", "Configuration", "Part", ""})}})},
                {"configuredDesignProjectId", object({{"value", id("project")}})}});
    return object({{"id", id("file")},
                   {"type", type("files")},
                   {"name", anyText()},
                   {"parent", reference(chance(50) ? "folder" : "project")},
                   {"project", reference("project")},
                   {"attributes", attributes}});
}

std::string RandomBody::version() {
    return object({{"id", id("version")},
                   {"type", type("versions")},
                   {"name", anyText()},
                   {"title", anyText()},
                   {"file", reference("file")}});
}

std::string RandomBody::folder() {
    return object({{"id", id("folder")},
                   {"type", type("folders")},
                   {"links", links()},
                   {"name", anyText()},
                   {"parent", id("folder")},
                   {"visible", chance(50) ? "true" : "false"},
                   {"status", word({"Active", "Active", "Archived", "Inactive", "Deleted"})},
                   {"containerType", word({"FOLDER", "folders", "PROJECT", "projects"})},
                   {"me", me()}});
}

std::string RandomBody::relationship() {
    return object({{"id", id("shared")},
                   {"type", type("relationships")},
                   {"self", anyText()},
                   {"fromUrn", reference("version")},
                   {"toUrn", reference("version")},
                   {"sourceFromUrn", reference("version")},
                   {"sourceToUrn", reference("version")},
                   {"relationshipType", word({"XREF", "DERIVED", "DEPENDENCY", "AUXILIARY"})}});
}

std::string RandomBody::make() {
    if (chance(2))
        return anyValue();
    const std::string data = object({{"id", id("version")},
                                     {"type", quoted("versions")},
                                     {"links", links()},
                                     {"inaccessibleProjects", number()},
                                     {"restrictedProjects", number()},
                                     {"relationships", array([this] { return relationship(); })}});
    const std::string included = object({{"versions", array([this] { return version(); })},
                                         {"files", array([this] { return file(); })},
                                         {"projects", array([this] { return project(); })},
                                         {"folders", array([this] { return folder(); })}});
    return object({{"data", data}, {"included", included}});
}

} // namespace OrvaneFuzz

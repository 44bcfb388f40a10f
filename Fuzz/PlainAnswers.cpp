#include "Fuzz/PlainAnswers.h"

#include "Benchmarks/PlainRules.h"
#include "Benchmarks/Readers.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace OrvaneFuzz {

namespace {

using namespace OrvaneBenchmarks;

Json describe(const PlainFile& file) {
    return {{"id", file.id},
            {"type", file.type},
            {"name", file.name},
            {"parentId", file.parentId},
            {"parentType", nameOf(file.parentType)},
            {"subTypes", file.subTypes ? Json(*file.subTypes) : Json()},
            {"isConfigurationDesign", file.subTypes == configuration}};
}

Json describe(const PlainProject& project) {
    return {{"id", project.id},
            {"type", project.type},
            {"href", project.href},
            {"name", project.name},
            {"parent", project.parent},
            {"visible", project.visible},
            {"status", nameOf(project.status)},
            {"membership", project.membership},
            {"role", project.role},
            {"communityType", project.communityType},
            {"isMember", project.isMember == "true"},
            {"isViewerRole", project.role == viewer},
            {"isControlledProject", project.communityType == controlled}};
}

Json describe(const PlainFolder& folder) {
    return {{"id", folder.id},
            {"type", folder.type},
            {"href", folder.href},
            {"name", folder.name},
            {"parent", folder.parent},
            {"visible", folder.visible},
            {"status", nameOf(folder.status)},
            {"isMember", folder.isMember},
            {"membership", folder.membership},
            {"containerType", nameOf(folder.containerType)},
            {"allowedActions", folder.allowedActions},
            {"mayRead", folder.allowedActions.contains("read")},
            {"isValid", true}}; // A folder read from JSON has a status, so it is valid.
}

Json describe(const PlainRelationship& relationship) {
    return {{"id", relationship.id},
            {"type", relationship.type},
            {"href", relationship.href},
            {"fromUrn", relationship.fromUrn},
            {"toUrn", relationship.toUrn},
            {"sourceFromUrn", relationship.sourceFromUrn},
            {"sourceToUrn", relationship.sourceToUrn},
            {"relationshipType", nameOf(relationship.relationshipType)}};
}

const PlainProject* findProject(const PlainAssembly& assembly, const std::string& id) {
    for (const PlainProject& project : assembly.projects)
        if (project.id == id)
            return &project;
    return nullptr;
}

// The names of the parents in each status, and of those to which the user has no access.
Json parentsOf(const PlainAssembly& assembly, bool withFolders) {
    Json names;
    for (const char* list : {"ARCHIVED", "DELETED", "INACTIVE", "denied"})
        names[list] = Json::array();
    for (const PlainProject& project : assembly.projects) {
        names[nameOf(project.status)].push_back(project.name);
        if (project.status == ContainerStatus::ACTIVE && (project.isMember != "true" || project.role == viewer))
            names["denied"].push_back(project.name);
    }
    if (!withFolders)
        return names;
    for (const auto& [id, folder] : assembly.folders) {
        names[nameOf(folder->status)].push_back(id);
        if (folder->status == ContainerStatus::ACTIVE && !folder->allowedActions.contains("read"))
            names["denied"].push_back(folder->name);
    }
    return names;
}

Json eventOf(const PlainAssembly& assembly, const char* version, const Json& parents) {
    const auto flag = [](bool holds) { return holds ? "1" : "0"; };
    return {{"event", "FullAssembly"},
            {"now", true},
            {"Version", version},
            {"Workflow", "workflow"},
            {"hasDeletedProjects", flag(!parents["DELETED"].empty())},
            {"hasAccessDeniedProjects", flag(!parents["denied"].empty())},
            {"hasArchivedProjects", flag(!parents["ARCHIVED"].empty())},
            {"hasInaccessibleProjects", flag(assembly.inaccessibleParents > 0)},
            {"hasRestrictedProjects", flag(assembly.restrictedParents > 0)}};
}

void addParents(const PlainAssembly& assembly, const char* version, const Json& parents, Json& answers) {
    answers["getArchivedParents"] = parents["ARCHIVED"];
    answers["getDeletedParents"] = parents["DELETED"];
    answers["getDeletedParentsCount"] = parents["DELETED"].size();
    answers["getInactiveParents"] = parents["INACTIVE"];
    answers["getAccessDeniedParents"] = parents["denied"];
    answers["event"] = eventOf(assembly, version, parents);
}

std::string projectTypeOf(const PlainAssembly& assembly) {
    const auto version = assembly.versions.find(assembly.id);
    if (version == assembly.versions.end())
        return "UNKNOWN";
    const auto file = assembly.files.find(version->second->fileId);
    if (file == assembly.files.end())
        return "UNKNOWN";
    if (assembly.folders.contains(file->second.parentId))
        return std::string(controlled);
    const PlainProject* project = findProject(assembly, file->second.parentId);
    return project ? project->communityType : "UNKNOWN";
}

// Whether the text is a number that the library keeps as a string of its digits: an integer beyond
// 64 bits, or a number too large for a double.
bool isBeyondRange(const std::string& number) {
    try {
        const bool isInteger = number.find_first_of(".eE") == std::string::npos;
        return Json::parse(number).is_number_float() && isInteger;
    } catch (const Json::out_of_range&) {
        return true;
    } catch (const Json::parse_error&) {
        return false;
    }
}

unsigned long escapedUnit(std::string_view text) {
    return text.starts_with("\\u") ? std::strtoul(std::string(text.substr(2, 4)).c_str(), nullptr, 16) : 0;
}

// Rewrites the body so that the parser accepts it: with U+FFFD for invalid text, and a string of
// the digits for each number that is out of range.
std::string withoutOddValues(const std::string& body) {
    const std::string text = Qx::ToHString(Qx::ToIString(body));
    std::string plain;
    bool isInString = false;
    for (std::string_view rest = text; !rest.empty();) {
        std::size_t taken = 1;
        std::string piece;
        if (isInString && rest.front() == '\\') {
            const unsigned long unit = escapedUnit(rest);
            const bool isHalf = unit >= 0xD800 && unit < 0xE000;
            const bool isPair = isHalf && unit < 0xDC00 && (escapedUnit(rest.substr(6)) & ~0x3FFUL) == 0xDC00;
            taken = isPair ? 12 : isHalf ? 6 : 2;
            piece = isHalf && !isPair ? "\uFFFD" : "";
        } else if (rest.front() == '"') {
            isInString = !isInString;
        } else if (!isInString && std::string_view("-0123456789").find(rest.front()) != std::string_view::npos) {
            taken = std::min(rest.find_first_not_of("+-.0123456789eE"), rest.size());
            const std::string number(rest.substr(0, taken));
            piece = isBeyondRange(number) ? '"' + number + '"' : "";
        }
        plain += piece.empty() ? rest.substr(0, taken) : piece;
        rest.remove_prefix(std::min(taken, rest.size()));
    }
    return plain;
}

// Keeps the first value of a duplicate key, as the library does; the parser would keep the last.
Json parse(const std::string& body) {
    std::map<int, std::set<std::string>> keysAtDepth;
    const auto keepFirst = [&](int depth, Json::parse_event_t event, const Json& parsed) {
        if (event == Json::parse_event_t::object_start)
            keysAtDepth[depth + 1].clear();
        return event != Json::parse_event_t::key || keysAtDepth[depth].insert(parsed.get<std::string>()).second;
    };
    return Json::parse(withoutOddValues(body), keepFirst, false);
}

} // namespace

std::optional<PlainAssembly> readPlainly(const std::string& body) {
    const Json root = parse(body);
    if (root.is_discarded())
        return std::nullopt;
    return readAssembly(root);
}

std::vector<std::string> idsOf(const PlainAssembly& assembly) {
    constexpr std::size_t enough = 16;
    std::set<std::string> ids;
    for (const auto& [id, file] : assembly.files)
        ids.insert({id, file.parentId});
    for (const auto& [id, folder] : assembly.folders)
        ids.insert(id);
    std::vector<std::string> some{assembly.id, "", "nobody's"};
    for (const PlainProject& project : assembly.projects)
        ids.insert(project.id);
    std::copy_n(ids.begin(), std::min(enough, ids.size()), std::back_inserter(some));
    return some;
}

Json firstAnswers(const PlainAssembly& assembly, const std::vector<std::string>& ids) {
    Json answers{{"getId", assembly.id},
                 {"getType", assembly.type},
                 {"getInaccessibleParents", assembly.inaccessibleParents},
                 {"getRestrictedParents", assembly.restrictedParents}};
    for (const char* table :
         {"getDirectReferencedFiles", "getProjectDetails", "getProjectDetailsForFiles", "getProjectMemberships"})
        answers[table] = Json::object();
    addParents(assembly, "V2", parentsOf(assembly, false), answers);
    for (const auto& [id, file] : assembly.files) {
        answers["getDirectReferencedFiles"][id] = file.name;
        if (const PlainProject* project = findProject(assembly, file.parentId))
            answers["getProjectDetailsForFiles"][id] = describe(*project);
    }
    for (const PlainProject& project : assembly.projects) {
        answers["getProjectDetails"].emplace(project.id, describe(project));
        if (project.status == ContainerStatus::ACTIVE)
            answers["getProjectMemberships"].emplace(project.id, project.membership);
    }
    for (const std::string& id : ids) {
        const PlainProject* project = findProject(assembly, id);
        answers["getProjectName"][id] = project ? Json(project->name) : Json("");
        answers["projectMembership"][id] = answers["getProjectMemberships"].value(id, "");
    }
    return answers;
}

Json answersV3(const PlainAssembly& assembly, const std::vector<std::string>& ids) {
    Json answers = firstAnswers(assembly, ids);
    addParents(assembly, "V3", parentsOf(assembly, true), answers);
    answers["event"]["assemblyProjectType"] = projectTypeOf(assembly);
    answers["getAllReferencedFiles"] = std::exchange(answers["getDirectReferencedFiles"], Json::object());
    for (const auto& [id, title] : assembly.directReferencedFiles)
        answers["getDirectReferencedFiles"][id] = title;
    answers["getAllRelationships"] = Json::array();
    for (const auto& relationship : assembly.relationships)
        answers["getAllRelationships"].push_back(describe(*relationship));
    for (const std::string& id : ids) {
        const auto file = assembly.files.find(id);
        answers["getFileById"][id] = file == assembly.files.end() ? Json() : describe(file->second);
        const auto folder = assembly.folders.find(id);
        answers["getFolder"][id] = folder == assembly.folders.end() ? Json() : describe(*folder->second);
        const PlainProject* project = findProject(assembly, id);
        answers["getProject"][id] = project ? describe(*project) : Json();
    }
    return answers;
}

} // namespace OrvaneFuzz

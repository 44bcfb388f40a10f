// The queries of the second reading.

#include "Fuzz/PlainReading.h"

#include <algorithm>

namespace OrvaneFuzz {

namespace {

using Fields = std::map<std::string, std::string>;

constexpr const char* active = "0";
constexpr const char* archived = "1";
constexpr const char* inactive = "2";
constexpr const char* deleted = "3";

// A parser has found the text valid.
std::wstring widen(const std::string& utf8) {
    std::wstring wide;
    for (const char character : utf8) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0xF0)
            wide += static_cast<wchar_t>(byte & 0x07);
        else if (byte >= 0xE0)
            wide += static_cast<wchar_t>(byte & 0x0F);
        else if (byte >= 0xC0)
            wide += static_cast<wchar_t>(byte & 0x1F);
        else if (byte >= 0x80)
            wide.back() = (wide.back() << 6) | (byte & 0x3F);
        else
            wide += static_cast<wchar_t>(byte);
    }
    return wide;
}

std::string at(const Fields& fields, const char* name) {
    const auto found = fields.find(name);
    return found == fields.end() ? "" : found->second;
}

std::string yesNo(bool holds) {
    return holds ? "yes" : "no";
}

bool contains(const std::vector<std::string>& list, const std::string& entry) {
    return std::find(list.begin(), list.end(), entry) != list.end();
}

Record describeFile(const Fields& file) {
    Record record;
    for (const char* name : {"id", "type", "parentId"})
        record[name] = text(at(file, name));
    record["name"] = text(widen(at(file, "name")));
    record["parentType"] = at(file, "parentType");
    record["subTypes"] = file.contains("subTypes") ? text(at(file, "subTypes")) : "none";
    record["isConfigurationDesign"] = yesNo(at(file, "subTypes") == "Configuration");
    return record;
}

Record describeProject(const Fields& project) {
    Record record;
    for (const char* name : {"id", "type", "href", "parent", "membership", "role", "communityType"})
        record[name] = text(at(project, name));
    for (const char* name : {"visible", "status", "isMember"})
        record[name] = at(project, name);
    record["name"] = text(widen(at(project, "name")));
    record["isViewerRole"] = yesNo(at(project, "role") == "VIEWER");
    record["isControlledProject"] = yesNo(at(project, "communityType") == "CONTROLLED");
    return record;
}

Record describeFolder(const Fields& folder, const std::vector<std::string>& actions) {
    Record record;
    for (const char* name : {"id", "type", "href", "name", "parent", "membership"})
        record[name] = text(at(folder, name));
    for (const char* name : {"visible", "status", "isMember", "containerType"})
        record[name] = at(folder, name);
    record["allowedActions"] = text(actions);
    record["mayRead"] = yesNo(contains(actions, "read"));
    record["isValid"] = "yes"; // It has got a status, which an empty one has not.
    return record;
}

Record describeRelationship(const Fields& relationship) {
    Record record;
    for (const char* name : {"id", "type", "href", "fromUrn", "toUrn", "sourceFromUrn", "sourceToUrn"})
        record[name] = text(at(relationship, name));
    record["relationshipType"] = at(relationship, "relationshipType");
    return record;
}

std::wstring flag(bool holds) {
    return holds ? L"1" : L"0";
}

std::string reportText(const std::unordered_map<std::wstring, std::wstring>& properties) {
    return text(std::wstring(L"FullAssembly")) + text(properties) + text(true);
}

} // namespace

PlainReading::Names PlainReading::projectsIn(const std::string& status) const {
    Names names;
    for (const Fields& project : projects_)
        if (at(project, "status") == status)
            names.push_back(widen(at(project, "name")));
    return names;
}

PlainReading::Names PlainReading::projectsClosed() const {
    Names names;
    for (const Fields& project : projects_)
        if (at(project, "status") == active && (at(project, "isMember") == "no" || at(project, "role") == "VIEWER"))
            names.push_back(widen(at(project, "name")));
    return names;
}

PlainReading::Names PlainReading::withFoldersIn(const std::string& status) const {
    Names names = projectsIn(status);
    for (const auto& [id, folder] : folders_)
        if (at(folder, "status") == status)
            names.push_back(widen(id));
    return names;
}

PlainReading::Names PlainReading::withFoldersClosed() const {
    Names names = projectsClosed();
    for (const auto& [id, folder] : folders_)
        if (at(folder, "status") == active && !contains(actions_.at(id), "read"))
            names.push_back(widen(at(folder, "name")));
    return names;
}

const PlainReading::Fields* PlainReading::projectOf(const std::string& id) const {
    for (const Fields& project : projects_)
        if (at(project, "id") == id)
            return &project;
    return nullptr;
}

Answers PlainReading::statusAnswers(const Names& archivedNames, const Names& deletedNames, const Names& inactiveNames,
                                    const Names& closedNames) const {
    return {{"getArchivedParents", text(archivedNames)},
            {"getDeletedParents", text(deletedNames)},
            {"getDeletedParentsCount", std::to_string(deletedNames.size())},
            {"getInactiveParents", text(inactiveNames)},
            {"getAccessDeniedParents", text(closedNames)}};
}

Answers PlainReading::firstAnswers(const std::vector<std::string>& ids) const {
    Answers answers = statusAnswers(projectsIn(archived), projectsIn(deleted), projectsIn(inactive), projectsClosed());
    answers["getId"] = text(at(data_, "id"));
    answers["getType"] = text(at(data_, "type"));
    answers["getInaccessibleParents"] = at(data_, "inaccessible");
    answers["getRestrictedParents"] = at(data_, "restricted");
    std::unordered_map<std::string, std::wstring> files;
    std::unordered_map<std::string, Record> projectOfFile;
    for (const auto& [id, file] : files_) {
        files[id] = widen(at(file, "name"));
        if (const Fields* project = projectOf(at(file, "parentId")))
            projectOfFile[id] = describeProject(*project);
    }
    answers["getDirectReferencedFiles"] = text(files);
    answers["getProjectDetailsForFiles"] = text(projectOfFile);
    std::unordered_map<std::string, Record> details;
    std::unordered_map<std::wstring, std::string> memberships;
    for (const Fields& project : projects_) {
        details.try_emplace(at(project, "id"), describeProject(project));
        if (at(project, "status") == active)
            memberships.try_emplace(widen(at(project, "id")), at(project, "membership"));
    }
    answers["getProjectDetails"] = text(details);
    answers["getProjectMemberships"] = text(memberships);
    for (const std::string& id : ids) {
        const Fields* project = projectOf(id);
        answers["getProjectName " + id] = text(project ? widen(at(*project, "name")) : std::wstring());
        const auto membership = memberships.find(widen(id));
        answers["projectMembership " + id] = text(membership == memberships.end() ? "" : membership->second);
    }
    return answers;
}

Answers PlainReading::answersV3(const std::vector<std::string>& ids) const {
    Answers answers = firstAnswers(ids);
    answers["getAllReferencedFiles"] = answers["getDirectReferencedFiles"];
    for (const auto& [question, answer] :
         statusAnswers(withFoldersIn(archived), withFoldersIn(deleted), withFoldersIn(inactive), withFoldersClosed()))
        answers[question] = answer;
    std::unordered_map<std::string, std::wstring> references;
    for (const auto& [id, title] : titles_)
        references[id] = widen(title);
    answers["getDirectReferencedFiles"] = text(references);
    std::vector<Record> relationships;
    for (const Fields& relationship : relationships_)
        relationships.push_back(describeRelationship(relationship));
    answers["getAllRelationships"] = text(relationships);
    for (const std::string& id : ids) {
        const auto file = files_.find(id);
        answers["getFileById " + id] = file == files_.end() ? "none" : text(describeFile(file->second));
        const auto folder = folders_.find(id);
        answers["getFolder " + id] =
            folder == folders_.end() ? "none" : text(describeFolder(folder->second, actions_.at(id)));
        const Fields* project = projectOf(id);
        answers["getProject " + id] = project ? text(describeProject(*project)) : "none";
    }
    return answers;
}

std::unordered_map<std::wstring, std::wstring> PlainReading::properties(const std::wstring& version,
                                                                        const Names& archivedNames,
                                                                        const Names& deletedNames,
                                                                        const Names& closedNames) const {
    return {{L"Version", version},
            {L"Workflow", L"workflow"},
            {L"hasDeletedProjects", flag(!deletedNames.empty())},
            {L"hasAccessDeniedProjects", flag(!closedNames.empty())},
            {L"hasArchivedProjects", flag(!archivedNames.empty())},
            {L"hasInaccessibleProjects", flag(std::stoi(at(data_, "inaccessible")) > 0)},
            {L"hasRestrictedProjects", flag(std::stoi(at(data_, "restricted")) > 0)}};
}

std::string PlainReading::firstReport() const {
    return reportText(properties(L"V2", projectsIn(archived), projectsIn(deleted), projectsClosed()));
}

std::string PlainReading::reportV3() const {
    auto all = properties(L"V3", withFoldersIn(archived), withFoldersIn(deleted), withFoldersClosed());
    all[L"assemblyProjectType"] = projectType();
    return reportText(all);
}

std::wstring PlainReading::projectType() const {
    const auto version = versions_.find(at(data_, "id"));
    const auto file = version == versions_.end() ? files_.end() : files_.find(at(version->second, "fileId"));
    if (file == files_.end())
        return L"UNKNOWN";
    const std::string parentId = at(file->second, "parentId");
    if (folders_.contains(parentId))
        return L"CONTROLLED";
    const Fields* project = projectOf(parentId);
    return project ? widen(at(*project, "communityType")) : L"UNKNOWN";
}

} // namespace OrvaneFuzz

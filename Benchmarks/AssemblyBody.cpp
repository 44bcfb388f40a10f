#include "Benchmarks/AssemblyBody.h"

#include <array>
#include <cstdint>
#include <fmt/format.h>
#include <iterator>
#include <random>
#include <string_view>
#include <vector>

namespace OrvaneBenchmarks {

namespace {

class Generator {
public:
    explicit Generator(std::size_t files);

    std::string body() &&;

private:
    std::uint64_t below(std::uint64_t limit) { return random_() % limit; }
    bool oneIn(std::uint64_t count) { return below(count) == 0; }
    template <class Choices>
    const auto& anyOf(const Choices& choices) {
        return choices[below(std::size(choices))];
    }

    std::string randomText(std::size_t length);
    std::vector<std::string> makeUrns(std::string_view kind, std::size_t count);
    std::string makeName();
    std::string membersNobodyReads(std::size_t bytes);

    void appendElement(std::string_view head, std::string_view tail);
    void appendFile(std::size_t index);
    void appendVersion(std::size_t index);
    void appendRelationship(std::size_t index);
    void appendFolder(std::size_t index);
    void appendProject(std::size_t index);
    template <class Append>
    void appendArray(std::string_view key, std::size_t count, Append append);

    const std::size_t files_;
    // The C++ standard defines its sequence, so bodies are the same everywhere.
    std::mt19937_64 random_;
    std::vector<std::string> fileIds_;
    std::vector<std::string> versionIds_;
    std::vector<std::string> folderIds_;
    std::vector<std::string> projectIds_;
    std::vector<std::string> names_;
    std::string body_;
};

Generator::Generator(std::size_t files)
    : files_(files),
      fileIds_(makeUrns("dm.lineage", files)),
      versionIds_(makeUrns("fs.file", files)),
      folderIds_(makeUrns("fs.folder", files / 10)),
      projectIds_(makeUrns("dm.project", files / 50 + 1)) {
    for (std::string& id : versionIds_)
        id += fmt::format("?version={}", 1 + below(30));
    for (std::size_t index = 0; index < files; ++index)
        names_.push_back(makeName());
}

std::string Generator::randomText(std::size_t length) {
    constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    std::string text;
    for (std::size_t index = 0; index < length; ++index)
        text += anyOf(letters);
    return text;
}

std::vector<std::string> Generator::makeUrns(std::string_view kind, std::size_t count) {
    std::vector<std::string> urns;
    for (std::size_t index = 0; index < count; ++index)
        urns.push_back(fmt::format("urn:vrnk.dorlqa:{}:{}", kind, randomText(33)));
    return urns;
}

std::string Generator::makeName() {
    constexpr std::array plain{"Bracket", "Housing cover", "Flange", "Drive shaft", "Bearing", "Gasket", "Motor mount"};
    constexpr std::array foreign{"Gehäusedeckel", "歯車", "Винт", "Τσιμούχα", "Codeur incrémental", "냉각 계획"};
    const std::string_view word = oneIn(5) ? anyOf(foreign) : anyOf(plain);
    return fmt::format("{} {}", word, 1000 + below(9000));
}

// Returns members that the library does not read, padded with a description to about `bytes` bytes.
std::string Generator::membersNobodyReads(std::size_t bytes) {
    const std::array<std::string, 7> members{
        fmt::format(R"("createTime":"2026-0{}-1{}T08:30:00.0000000Z")", 1 + below(9), below(10)),
        fmt::format(R"("createUserId":"{}")", randomText(12)),
        fmt::format(R"("lastModifiedUserName":"{} {}")", anyOf(std::array{"Jörg", "Ana", "李"}), randomText(8)),
        fmt::format(R"("extension":{{"type":"designs:core:Item","version":"1.{}","data":{{"sourceFileName":"{}.prt",)"
                    R"("scale":{}.5,"locked":{}}}}})",
                    below(10), randomText(10), below(100), oneIn(2)),
        fmt::format(R"("storageSize":{})", below(100'000'000)),
        fmt::format(R"("hidden":{},"reserved":{})", oneIn(9), oneIn(9)),
        fmt::format(R"("thumbnail":{{"href":"https://thumbs.orvane.example/{}"}})", randomText(20)),
    };
    constexpr std::string_view framed = R"("description":"")";
    std::string text;
    for (const std::string& member : members)
        if (text.size() + member.size() + framed.size() < bytes)
            text += member + ',';
    const std::size_t used = text.size() + framed.size();
    return text + fmt::format(R"("description":"{:x<{}}")", "", bytes > used ? bytes - used : 0);
}

void Generator::appendElement(std::string_view head, std::string_view tail) {
    const std::string unread = membersNobodyReads(head.size() + tail.size());
    fmt::format_to(std::back_inserter(body_), "{{{},{},{}}}", head, unread, tail);
}

void Generator::appendFile(std::size_t index) {
    const bool isInProject = oneIn(4);
    const std::string parent =
        isInProject
            ? fmt::format(R"("parent":{{"type":"projects","id":"{}"}},"project":{{"type":"projects","id":"{}"}})",
                          anyOf(folderIds_), anyOf(projectIds_))
            : fmt::format(R"("parent":{{"type":"folders","id":"{}"}})", anyOf(folderIds_));
    const std::string attributes =
        oneIn(20)
            ? fmt::format(R"("subTypes":{{"value":"Configuration"}},"configuredDesignProjectId":{{"value":"{}"}})",
                          anyOf(projectIds_))
            : R"("subTypes":{"value":"Part"})";
    appendElement(fmt::format(R"("type":"files","id":"{}","name":"{}.prt")", fileIds_[index], names_[index]),
                  fmt::format(R"({},"attributes":{{{}}})", parent, attributes));
}

void Generator::appendVersion(std::size_t index) {
    appendElement(fmt::format(R"("type":"versions","id":"{}")", versionIds_[index]),
                  fmt::format(R"("name":"{0}","title":"{0} v{1}","file":{{"type":"files","id":"{2}"}})", names_[index],
                              1 + below(30), fileIds_[index]));
}

void Generator::appendRelationship(std::size_t index) {
    const std::string& from = oneIn(20) ? versionIds_.front() : anyOf(versionIds_);
    const std::string& to = anyOf(versionIds_);
    const auto end = [](std::string_view key, std::string_view id) {
        return fmt::format(R"("{}":{{"type":"versions","id":"{}"}})", key, id);
    };
    constexpr std::array types{"XREF", "XREF", "XREF", "DERIVED", "DEPENDENCY", "AUXILIARY"};
    appendElement(fmt::format(R"("type":"relationships","id":"{}","self":"/relationships/{}",{},{})", randomText(60),
                              index, end("fromUrn", from), end("toUrn", to)),
                  fmt::format(R"("relationshipType":"{}",{},{})", anyOf(types), end("sourceFromUrn", from),
                              end("sourceToUrn", to)));
}

void Generator::appendFolder(std::size_t index) {
    constexpr std::array statuses{"Active", "Active", "Active", "Archived", "Inactive", "Deleted"};
    appendElement(fmt::format(R"("type":"folders","id":"{0}","links":{{"self":"/folders/{0}"}},"name":"{1}")",
                              folderIds_[index], makeName()),
                  fmt::format(R"("parent":"{}","visible":true,"containerType":"FOLDER","status":"{}","me":{{)"
                              R"("isMember":{},"membership":"ACTIVE_MEMBER","allowed-actions":)"
                              R"(["{}","view","write","zelvar:ft:share","zelvar:ft:download","delete"]}})",
                              anyOf(folderIds_), anyOf(statuses), !oneIn(10), oneIn(10) ? "list" : "read"));
}

void Generator::appendProject(std::size_t index) {
    constexpr std::array statuses{"Active", "Active", "Active", "Archived", "Inactive", "Deleted"};
    constexpr std::array communities{"CLOSED", "OPEN", "CONTROLLED"};
    constexpr std::array roles{"PROJECT_ADMIN", "EDITOR", "VIEWER"};
    appendElement(fmt::format(R"("type":"projects","id":"{0}","links":{{"self":"/projects/{0}"}},"name":"{1}")",
                              projectIds_[index], makeName()),
                  fmt::format(R"("parent":"{}","visible":true,"status":"{}","communityType":"{}","me":{{)"
                              R"("isMember":"{}","membership":"ACTIVE_MEMBER","role":"{}"}})",
                              randomText(33), anyOf(statuses), anyOf(communities), !oneIn(10), anyOf(roles)));
}

template <class Append>
void Generator::appendArray(std::string_view key, std::size_t count, Append append) {
    body_ += fmt::format(R"("{}":[)", key);
    for (std::size_t index = 0; index < count; ++index) {
        if (index > 0)
            body_ += ',';
        append(index);
    }
    body_ += ']';
}

std::string Generator::body() && {
    fmt::format_to(std::back_inserter(body_),
                   R"({{"data":{{"type":"versions","id":"{0}","links":{{"self":"/versions/{0}"}},)"
                   R"("inaccessibleProjects":2,"restrictedProjects":1,)",
                   versionIds_.front());
    appendArray("relationships", files_ + files_ / 2, [this](std::size_t index) { appendRelationship(index); });
    body_ += R"(},"included":{)";
    appendArray("projects", projectIds_.size(), [this](std::size_t index) { appendProject(index); });
    body_ += ',';
    appendArray("files", files_, [this](std::size_t index) { appendFile(index); });
    body_ += ',';
    appendArray("versions", files_, [this](std::size_t index) { appendVersion(index); });
    body_ += ',';
    appendArray("folders", folderIds_.size(), [this](std::size_t index) { appendFolder(index); });
    body_ += "}}";
    return std::move(body_);
}

} // namespace

std::string makeAssemblyBody(std::size_t files) {
    return Generator(files).body();
}

} // namespace OrvaneBenchmarks

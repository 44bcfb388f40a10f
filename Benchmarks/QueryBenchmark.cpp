#include "Base/QxBase10/HTTPResponse.h"
#include "Benchmarks/AssemblyBody.h"
#include "Benchmarks/MemoryMeter.h"
#include "Benchmarks/Readers.h"

#include <benchmark/benchmark.h>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

namespace OrvaneBenchmarks {

namespace {

// A document, and the ids of its records in an order unrelated to that of the document.
class Subject {
public:
    explicit Subject(std::size_t files) : document(readWithLibrary(Qx::HTTPResponse(200, makeAssemblyBody(files)))) {
        for (const auto& [id, name] : document.getAllReferencedFiles()) {
            fileIds_.push_back(id);
            const Orvane::Payloads::FilesData& file = *document.getFileById(id);
            if (file.getParentType() == Orvane::Payloads::ContainerType::FOLDER)
                folderIds_.push_back(file.getParentId());
        }
        for (const auto& [id, project] : document.getProjectDetails())
            projectIds_.push_back(id);
    }

    const std::string& fileId(std::size_t call) const { return fileIds_[call % fileIds_.size()]; }
    const std::string& folderId(std::size_t call) const { return folderIds_[call % folderIds_.size()]; }
    const std::string& projectId(std::size_t call) const { return projectIds_[call % projectIds_.size()]; }

    const Orvane::Payloads::FullAssemblyDataV3 document;

private:
    std::vector<std::string> fileIds_;
    std::vector<std::string> folderIds_;
    std::vector<std::string> projectIds_;
};

const Subject& subjectOf(std::size_t files) {
    static std::map<std::size_t, Subject> subjects;
    return subjects.try_emplace(files, files).first->second;
}

// Returns the number of allocations that copying the result takes: 0 for a pointer, which refers to
// what the document owns.
template <class Result>
double allocationsToCopy(const Result& result) {
    if constexpr (std::is_pointer_v<Result> || std::is_null_pointer_v<Result>)
        return 0;
    else
        return static_cast<double>(measureMemory([&] { benchmark::DoNotOptimize(Result(result)); }).allocations);
}

// `order` says what the documented cost grows with. `ask` takes the number of the call, which
// selects the id to ask for.
template <class Ask>
void query(benchmark::State& state, const char* order, Ask ask) {
    const Subject& subject = subjectOf(static_cast<std::size_t>(state.range(0)));
    std::size_t call = 0;
    for ([[maybe_unused]] const auto& iteration : state) {
        auto result = ask(subject, call++);
        benchmark::DoNotOptimize(result);
    }
    state.SetLabel(order);
    state.counters["files"] = static_cast<double>(state.range(0));
    const MemoryUse use = measureMemory([&] { ask(subject, 0); });
    state.counters["allocations"] = static_cast<double>(use.allocations);
    state.counters["allocationsOfResult"] = allocationsToCopy(ask(subject, 0));
}

void withSizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(100)->Arg(1'000)->Arg(10'000);
}

template <class Ask>
void add(const std::string& name, const char* order, Ask ask) {
    benchmark::RegisterBenchmark(("query/" + name).c_str(), query<Ask>, order, ask)->Apply(withSizes);
}

const bool queriesAdded = [] {
    using S = const Subject&;
    add("getDeletedParentsCount", "projects, folders",
        [](S s, std::size_t) { return s.document.getDeletedParentsCount(); });
    add("getArchivedParents", "projects, folders", [](S s, std::size_t) { return s.document.getArchivedParents(); });
    add("getDeletedParents", "projects, folders", [](S s, std::size_t) { return s.document.getDeletedParents(); });
    add("getInactiveParents", "projects, folders", [](S s, std::size_t) { return s.document.getInactiveParents(); });
    add("getAccessDeniedParents", "projects, folders",
        [](S s, std::size_t) { return s.document.getAccessDeniedParents(); });
    add("getInaccessibleParents", "1", [](S s, std::size_t) { return s.document.getInaccessibleParents(); });
    add("getRestrictedParents", "1", [](S s, std::size_t) { return s.document.getRestrictedParents(); });
    add("getDirectReferencedFiles", "direct references",
        [](S s, std::size_t) { return s.document.getDirectReferencedFiles(); });
    add("getAllReferencedFiles", "files", [](S s, std::size_t) { return s.document.getAllReferencedFiles(); });
    add("getAllRelationships", "1", [](S s, std::size_t) { return &s.document.getAllRelationships(); });
    add("getFileById", "log files", [](S s, std::size_t call) { return s.document.getFileById(s.fileId(call)); });
    add("getFolder", "log folders", [](S s, std::size_t call) { return s.document.getFolder(s.folderId(call)); });
    add("getProject", "projects", [](S s, std::size_t call) { return s.document.getProject(s.projectId(call)); });
    add("getProjectName", "projects",
        [](S s, std::size_t call) { return s.document.getProjectName(s.projectId(call)); });
    add("projectMembership", "projects",
        [](S s, std::size_t call) { return s.document.projectMembership(s.projectId(call)); });
    add("getProjectDetails", "projects", [](S s, std::size_t) { return s.document.getProjectDetails(); });
    add("getProjectDetailsForFiles", "files, projects",
        [](S s, std::size_t) { return s.document.getProjectDetailsForFiles(); });
    add("getProjectMemberships", "projects", [](S s, std::size_t) { return s.document.getProjectMemberships(); });
    add("sendFullAssemblyAnalytics", "projects, folders", [](S s, std::size_t) {
        s.document.sendFullAssemblyAnalytics(L"measure");
        return nullptr;
    });
    return true;
}();

} // namespace

} // namespace OrvaneBenchmarks

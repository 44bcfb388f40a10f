// Any bytes as the service's answer: documents of both generations come out, or none; they answer every query, and
// their copies answer alike.

#include "Base/QxBaseCore10/Analytics.h"
#include "Base/QxBaseCore10/Strings.h"
#include "Fuzz/Answers.h"
#include "Fuzz/Require.h"
#include "Server/Orvane/Orvanedm.h"
#include "Tests/Support/AnsweringClient.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

namespace {

using namespace OrvaneFuzz;
using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;

// Some ids that the document knows, and those that the seeds use.
std::vector<std::string> idsOf(const FullAssemblyData& document) {
    constexpr std::size_t enough = 4;
    std::vector<std::string> ids{document.getId(), "", "urn:vrnk.dorlqa:fs.folder:folderA", "o", "p"};
    const std::size_t fixed = ids.size();
    for (const auto& [id, name] : document.FullAssemblyData::getDirectReferencedFiles())
        if (ids.size() < fixed + enough)
            ids.push_back(id);
    for (const auto& [id, project] : document.getProjectDetails())
        if (ids.size() < fixed + 2 * enough)
            ids.push_back(id);
    return ids;
}

// What a document says before anything is done with it.
template <class Document>
struct Said {
    explicit Said(const Document& document)
        : ids(idsOf(document)), answers(answersOf(document, ids)), report(reportOf(document)) {}

    bool isSameOf(const Document& document) const {
        return answersOf(document, ids) == answers && reportOf(document) == report;
    }

    const std::vector<std::string> ids;
    const Answers answers;
    const std::string report;
};

// Each step starts from what the last one left, so that what any of them loses is missed at the end.
template <class Document>
void checkCopies(const Document& document, const Said<Document>& said) {
    Document copy = document;
    const Document& itself = copy;
    copy = itself;
    const Document moved = std::move(copy);
    copy = Document();
    copy = moved;
    require(said.isSameOf(Document(copy)), "copied, assigned and moved a document says what it did");
}

void checkMoves(const FullAssemblyDataV3& document, const Said<FullAssemblyDataV3>& said) {
    FullAssemblyDataV3 source = document;
    FullAssemblyDataV3& itself = source;
    source = std::move(itself);
    FullAssemblyDataV3 target;
    target = std::move(source);
    require(said.isSameOf(target), "a move, to itself first, takes all");
    require(source.getAllRelationships().empty() && source.getDirectReferencedFiles().empty(), "a move leaves nothing");
    require(source.getId() == document.getId() && source.getAllReferencedFiles() == document.getAllReferencedFiles(),
            "a move leaves the base");
    for (const std::string& id : said.ids) {
        require(source.getFolder(id) == nullptr, "a move leaves no folder");
        require(target.getFolder(id) == document.getFolder(id), "copies share their folders");
    }
    const FullAssemblyData base = document;
    require(base.getDirectReferencedFiles() == document.getAllReferencedFiles(), "a copy as the base answers as one");
}

// Keeps the "Workflow" of each usage event while it lives.
class Events {
public:
    Events() {
        Qx::Analytics::setEventSink([this](const Qx::Analytics::Report& event, bool) {
            workflows_.push_back(event.properties.at(L"Workflow"));
        });
    }
    Events(const Events&) = delete;
    Events& operator=(const Events&) = delete;
    ~Events() { Qx::Analytics::setEventSink(nullptr); }

    const std::vector<std::wstring>& workflows() const { return workflows_; }

private:
    std::vector<std::wstring> workflows_;
};

// Gives whether it succeeded.
bool askForStatus(Qx::Orvanedm& orvanedm, const std::wstring& workflow) {
    const Events events;
    int callbacks = 0;
    bool hasSucceeded = false;
    orvanedm.getFullAssemblyStatus_V3(
        "urn",
        [&](bool success, const std::shared_ptr<FullAssemblyData>& document) {
            ++callbacks;
            hasSucceeded = success;
            require(events.workflows().empty(), "the event comes behind the callback");
            require(success == (document != nullptr), "a document comes with success only");
            if (!document)
                return;
            const auto documentV3 = std::dynamic_pointer_cast<FullAssemblyDataV3>(document);
            require(documentV3 != nullptr, "the document is of the V3 generation");
            const Said said(*documentV3);
            checkCopies(*documentV3, said);
            checkMoves(*documentV3, said);
            require(said.isSameOf(*documentV3), "what was copied has not changed");
        },
        "ACTUAL", workflow);
    require(callbacks == 1, "the status callback is called once");
    require(events.workflows() == std::vector<std::wstring>(hasSucceeded ? 1 : 0, workflow),
            "success is reported once, with the workflow");
    return hasSucceeded;
}

bool askForAccess(Qx::Orvanedm& orvanedm) {
    const Events events;
    int callbacks = 0;
    bool hasSucceeded = false;
    orvanedm.requestFullAssemblyAccess(
        "urn",
        [&](bool success, const FullAssemblyData& document) {
            ++callbacks;
            hasSucceeded = success;
            const Said said(document);
            checkCopies(document, said);
            require(said.isSameOf(document), "what was copied has not changed");
            require(success || answersOf(document, {}) == answersOf(FullAssemblyData(), {}), "failure gives nothing");
        },
        "LATEST");
    require(callbacks == 1, "the access callback is called once");
    require(events.workflows().empty(), "access is not reported");
    return hasSucceeded;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string body(reinterpret_cast<const char*>(bytes), size);
    Qx::Orvanedm orvanedm(std::make_shared<AnsweringClient>(body), "");
    const bool isStatus = askForStatus(orvanedm, Qx::ToIString(body.substr(0, 8)));
    require(askForAccess(orvanedm) == isStatus, "both generations agree on what is JSON");
    return 0;
}

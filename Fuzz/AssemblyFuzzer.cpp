// Any bytes as the service's answer: documents of both generations come out, or none; they answer every query, and
// their copies answer alike.

#include "Fuzz/Answers.h"
#include "Fuzz/Require.h"
#include "Server/Orvane/Orvanedm.h"
#include "Tests/Support/AnsweringClient.h"

#include <cstddef>
#include <cstdint>

namespace {

using namespace OrvaneFuzz;
using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;

// Some ids that the document knows, and one of each kind that it likely does not.
std::vector<std::string> idsOf(const FullAssemblyData& document) {
    constexpr std::size_t enough = 4;
    std::vector<std::string> ids{document.getId(), ""};
    for (const auto& [id, name] : document.FullAssemblyData::getDirectReferencedFiles())
        if (ids.size() < 2 + enough)
            ids.push_back(id);
    for (const auto& [id, project] : document.getProjectDetails())
        if (ids.size() < 2 + 2 * enough)
            ids.push_back(id);
    return ids;
}

// Each step starts from what the last one left, so that what any of them loses is missed at the end.
template <class Document>
void checkCopies(const Document& document) {
    const auto ids = idsOf(document);
    const Answers answers = answersOf(document, ids);
    const std::string report = reportOf(document);
    Document copy = document;
    const Document& itself = copy;
    copy = itself;
    const Document moved = std::move(copy);
    copy = Document();
    copy = moved;
    require(answersOf(Document(copy), ids) == answers, "copied, assigned and moved a document answers as it did");
    require(reportOf(copy) == report, "copied, assigned and moved a document reports as it did");
    require(answersOf(document, ids) == answers, "what was copied has not changed");
}

void checkMoves(const FullAssemblyDataV3& document) {
    FullAssemblyDataV3 source = document;
    FullAssemblyDataV3 target;
    target = std::move(source);
    require(source.getAllRelationships().empty() && source.getDirectReferencedFiles().empty(), "a move leaves nothing");
    require(source.getId() == document.getId() && source.getAllReferencedFiles() == document.getAllReferencedFiles(),
            "a move leaves the base");
    const FullAssemblyData base = document;
    require(base.getDirectReferencedFiles() == document.getAllReferencedFiles(), "a copy as the base answers as one");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto client = std::make_shared<AnsweringClient>(std::string(reinterpret_cast<const char*>(bytes), size));
    Qx::Orvanedm orvanedm(client, "");
    int statusCallbacks = 0;
    orvanedm.getFullAssemblyStatus_V3(
        "urn",
        [&](bool success, const std::shared_ptr<FullAssemblyData>& document) {
            ++statusCallbacks;
            require(success == (document != nullptr), "a document comes with success only");
            if (!document)
                return;
            const auto documentV3 = std::dynamic_pointer_cast<FullAssemblyDataV3>(document);
            require(documentV3 != nullptr, "the document is of the V3 generation");
            checkCopies(*documentV3);
            checkMoves(*documentV3);
        },
        "ACTUAL", L"fuzz");
    require(statusCallbacks == 1, "the status callback is called once");
    int accessCallbacks = 0;
    orvanedm.requestFullAssemblyAccess(
        "urn",
        [&](bool, const FullAssemblyData& document) {
            ++accessCallbacks;
            checkCopies(document);
        },
        "LATEST");
    require(accessCallbacks == 1, "the access callback is called once");
    return 0;
}

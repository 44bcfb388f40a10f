// Feeds arbitrary bytes to the library as the service's answer. Either the documents of both API
// versions are read, or neither is. They and their copies must answer every query as the plain
// reader does.

#include "Base/QxBaseCore10/Strings.h"
#include "Fuzz/PlainAnswers.h"
#include "Fuzz/Require.h"
#include "Server/Orvane/Orvanedm.h"
#include "Testing/PreparedHTTPClient.h"
#include "Testing/ScopedState.h"

#include <cstdint>

namespace {

using namespace OrvaneFuzz;
using Orvane::Payloads::FullAssemblyData;
using Orvane::Payloads::FullAssemblyDataV3;

// The expected answers of a document: to the queries that take an id, for each of `ids`, and to all
// other queries.
struct Expected {
    std::vector<std::string> ids;
    Json answers;
};

template <class Document>
void requireAnswers(const Document& document, const Expected& expected, const char* what) {
    Json answers = answersOf(document, expected.ids);
    answers["event"] = eventOf(document, L"workflow");
    if (answers == expected.answers)
        return;
    for (const auto& [query, answer] : expected.answers.items())
        if (answers[query] != answer)
            std::fprintf(stderr, "%s\nlibrary: %s\nplain:   %s\n", query.c_str(), answers[query].dump().c_str(),
                         answer.dump().c_str());
    require(false, what);
}

// Each step starts from the result of the step before, so that the final copy lacks whatever any of
// them loses.
template <class Document>
Document copied(const Document& document) {
    Document copy = document;
    const Document& itself = copy;
    copy = itself;
    const Document moved = std::move(copy);
    copy = Document();
    copy = moved;
    return copy;
}

void checkMoves(const FullAssemblyDataV3& document, const Expected& expected) {
    FullAssemblyDataV3 first = copied(document);
    FullAssemblyDataV3 second = std::move(first);
    FullAssemblyDataV3& itself = second;
    second = std::move(itself);
    FullAssemblyDataV3 target;
    target = std::move(second);
    requireAnswers(target, expected, "copying and moving a document, even to itself, preserves its answers");
    for (const FullAssemblyDataV3* left : {&first, &second}) {
        require(left->getAllRelationships().empty() && left->getDirectReferencedFiles().empty(),
                "a moved-from document has no relationships or direct references");
        require(left->getId() == document.getId(), "a moved-from document keeps its id");
        require(left->getAllReferencedFiles() == document.getAllReferencedFiles(),
                "a moved-from document keeps its files");
    }
    for (const std::string& id : expected.ids) {
        require(!first.getFolder(id) && !second.getFolder(id), "a moved-from document has no folders");
        require(target.getFolder(id) == document.getFolder(id), "copies share their folders");
    }
    const FullAssemblyData base = document;
    require(base.getDirectReferencedFiles() == document.getAllReferencedFiles(),
            "a copy as the base class answers as the base class does");
}

// Returns whether the request succeeded.
bool askForStatus(Qx::Orvanedm& orvanedm, const std::string& body) {
    const Orvane::Testing::CapturedEvents events;
    int callbacks = 0;
    std::shared_ptr<FullAssemblyDataV3> document;
    orvanedm.getFullAssemblyStatus_V3(
        "urn",
        [&](bool success, const std::shared_ptr<FullAssemblyData>& data) {
            ++callbacks;
            document = std::dynamic_pointer_cast<FullAssemblyDataV3>(data);
            require(success == (document != nullptr), "there is a V3 document exactly on success");
            require(events.all().empty(), "the event comes after the callback");
        },
        "ACTUAL", L"workflow");
    require(callbacks == 1, "the status callback is called once");
    require(events.all().size() == (document ? 1 : 0), "one event is tracked on success, and none on failure");
    if (!document) {
        const Json root = Json::parse(body, nullptr, false);
        require(body.size() > 2048 || root.is_discarded() || root.dump() != body, "compact JSON is accepted");
        return false;
    }
    const auto plain = readPlainly(body);
    require(plain.has_value(), "both readers agree on what is JSON");
    Expected expected{idsOf(*plain), {}};
    expected.answers = answersV3(*plain, expected.ids);
    requireAnswers(*document, expected, "the document answers as the plain reader does");
    checkMoves(*document, expected);
    return true;
}

bool askForAccess(Qx::Orvanedm& orvanedm, const std::string& body) {
    const Orvane::Testing::CapturedEvents events;
    int callbacks = 0;
    bool hasSucceeded = false;
    orvanedm.requestFullAssemblyAccess(
        "urn",
        [&](bool success, const FullAssemblyData& document) {
            ++callbacks;
            hasSucceeded = success;
            const auto plain = success ? readPlainly(body) : OrvaneBenchmarks::PlainAssembly();
            require(plain.has_value(), "both readers agree on what is JSON");
            Expected expected{idsOf(*plain), {}};
            expected.answers = firstAnswers(*plain, expected.ids);
            requireAnswers(copied(document), expected, "the document's copy answers as the plain reader does");
        },
        "LATEST");
    require(callbacks == 1, "the access callback is called once");
    require(events.all().empty(), "an access request tracks no event");
    return hasSucceeded;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string body(reinterpret_cast<const char*>(bytes), size);
    Qx::Orvanedm orvanedm(std::make_shared<Orvane::Testing::PreparedHTTPClient>(Qx::HTTPResponse(200, body)), "");
    const bool isStatus = askForStatus(orvanedm, body);
    require(askForAccess(orvanedm, body) == isStatus, "both API versions agree on what is JSON");
    return 0;
}

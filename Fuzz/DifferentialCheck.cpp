// DifferentialCheck BODIES [SEED]: the library and the plain reading agree on every query of so many random bodies.

#include "Base/QxBaseCore10/JSONNode.h"
#include "Fuzz/PlainReading.h"
#include "Fuzz/RandomBody.h"

#include <cstdio>
#include <cstdlib>

namespace {

using namespace OrvaneFuzz;

// Tells the first question that the two answer differently, if there is one.
bool isSame(const Answers& library, const Answers& plain, const std::string& body) {
    if (library == plain)
        return true;
    std::fprintf(stderr, "%s\n", body.c_str());
    for (const auto& [question, answer] : plain) {
        const auto found = library.find(question);
        const std::string other = found == library.end() ? "not asked" : found->second;
        if (other == answer)
            continue;
        std::fprintf(stderr, "asked: %s\nlibrary: %s\nplain:   %s\n", question.c_str(), other.c_str(), answer.c_str());
        break;
    }
    return false;
}

template <class Document>
Answers libraryAnswers(const Qx::JSONNode& root) {
    const Document document(root);
    Answers answers = answersOf(document, RandomBody::ids());
    answers["report"] = reportOf(document);
    return answers;
}

bool isReadAlike(const std::string& body) {
    const Qx::JSONNode root(body);
    const PlainReading plain(body);
    Answers first = plain.firstAnswers(RandomBody::ids());
    first["report"] = plain.firstReport();
    Answers v3 = plain.answersV3(RandomBody::ids());
    v3["report"] = plain.reportV3();
    return isSame(libraryAnswers<Orvane::Payloads::FullAssemblyData>(root), first, body) &&
           isSame(libraryAnswers<Orvane::Payloads::FullAssemblyDataV3>(root), v3, body);
}

} // namespace

int main(int argc, char** argv) {
    const unsigned long bodies = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 0;
    const unsigned long seed = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 1;
    if (bodies == 0) {
        std::fputs("DifferentialCheck BODIES [SEED]\n", stderr);
        return EXIT_FAILURE;
    }
    RandomBody random(seed);
    std::size_t bytes = 0;
    for (unsigned long i = 0; i < bodies; ++i) {
        const std::string body = random.make();
        bytes += body.size();
        if (!isReadAlike(body)) {
            std::fprintf(stderr, "the readings of body %lu of seed %lu differ\n", i, seed);
            return EXIT_FAILURE;
        }
    }
    std::printf("%lu random bodies of seed %lu, %zu bytes each on average: both readings agree\n", bodies, seed,
                bytes / bodies);
    return EXIT_SUCCESS;
}

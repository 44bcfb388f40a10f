// Checks that all readers that the benchmarks compare produce the same answers to every query, on a
// body made for the benchmarks.

#include "Benchmarks/Readers.h"
#include "Benchmarks/AssemblyBody.h"
#include "Fuzz/PlainAnswers.h"
#include "Fuzz/Require.h"

int main() {
    using namespace OrvaneFuzz;
    const Qx::HTTPResponse response(200, OrvaneBenchmarks::makeAssemblyBody(500));
    const OrvaneBenchmarks::PlainAssembly byHand = OrvaneBenchmarks::readByHand(response);
    const std::vector<std::string> ids = idsOf(byHand);
    Json library = answersOf(OrvaneBenchmarks::readWithLibrary(response), ids);
    Json hand = answersV3(byHand, ids);
    library["event"] = eventOf(OrvaneBenchmarks::readWithLibrary(response), L"workflow");
    require(library["getAllReferencedFiles"].size() == 500 && !library["getDirectReferencedFiles"].empty(),
            "there is something to compare");
    require(hand == answersV3(OrvaneBenchmarks::readWithNlohmann(response), ids),
            "the hand-written reader agrees with nlohmann's");
    require(hand == library, "the hand-written reader agrees with the library");
    return 0;
}

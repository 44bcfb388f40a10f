// Mutates half of the inputs as bytes, with libFuzzer's mutator, and the others as JSON values.

#include "Fuzz/Mutation.h"

#include <algorithm>
#include <cstdint>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* bytes, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* bytes, std::size_t size, std::size_t maxSize,
                                               unsigned seed) {
    std::mt19937 random(seed);
    if (random() % 2 == 0)
        return LLVMFuzzerMutate(bytes, size, maxSize);
    const std::string mutated =
        OrvaneFuzz::mutateValues(std::string(reinterpret_cast<const char*>(bytes), size), random);
    if (mutated.size() > maxSize || mutated == std::string_view(reinterpret_cast<const char*>(bytes), size))
        return LLVMFuzzerMutate(bytes, size, maxSize);
    std::copy(mutated.begin(), mutated.end(), bytes);
    return mutated.size();
}

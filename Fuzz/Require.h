#pragma once

#include <cstdio>
#include <cstdlib>

namespace OrvaneFuzz {

/// Ends the program where what must hold does not, which is what a fuzzer takes for a finding.
inline void require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

} // namespace OrvaneFuzz

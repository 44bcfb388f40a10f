#pragma once

#include <cstdio>
#include <cstdlib>

namespace OrvaneFuzz {

/// Aborts the program if `holds` is false, which libFuzzer reports as a finding.
inline void require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

} // namespace OrvaneFuzz

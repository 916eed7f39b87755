#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the process, and so the fuzzing, where it does not hold; `rule` is printed then.
inline void Require(bool holds, const char* rule) {
    if (holds)
        return;
    std::fprintf(stderr, "Broken: %s\n", rule);
    std::abort();
}

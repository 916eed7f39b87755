#pragma once

// Code for vector instructions stands beside the plain code, function by function, and is chosen
// when the program runs. KESTRIN_WITHOUT_AVX2 leaves it out, as for a machine that has none.

#if defined(__x86_64__) && !defined(KESTRIN_WITHOUT_AVX2)

#include <immintrin.h>

#define KESTRIN_HAS_AVX2_CODE 1

/// Stands before each function that is entered only where HasAVX2() is true.
#define KESTRIN_AVX2 __attribute__((target("avx2,popcnt")))

inline bool HasAVX2() {
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt");
}

#else

#define KESTRIN_HAS_AVX2_CODE 0

#endif

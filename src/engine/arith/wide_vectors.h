#pragma once

// Makes a second version of a function for processors with vectors of 256 bits, where its loops run up to
// four times as fast; which one is called is settled when the program starts.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__)
#define ZELVION_WIDE_VECTORS __attribute__((target_clones("avx2", "default")))
#else
#define ZELVION_WIDE_VECTORS
#endif

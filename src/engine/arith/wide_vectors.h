#pragma once

// Compiles a second version of a function for processors with 256-bit vectors, on which its loops run up to
// four times as fast. The version is chosen when the program starts.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__)
#define ZELVION_WIDE_VECTORS __attribute__((target_clones("avx2", "default")))
#else
#define ZELVION_WIDE_VECTORS
#endif

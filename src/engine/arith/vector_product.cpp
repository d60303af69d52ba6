// Compiled for AVX2 where the processor may have it, and called only where it has; see vector_image.cpp.
#include "engine/arith/vector_product.h"

namespace zelvion::vector_product {

#if defined(ZELVION_AVX2)

bool isSupported() noexcept {
  return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
}

void multiply(const fourier::Roots& roots, const fourier::Task& task) noexcept {
  fourier::multiply(roots, task);
}

#else

bool isSupported() noexcept { return false; }
void multiply(const fourier::Roots&, const fourier::Task&) noexcept {}

#endif

}  // namespace zelvion::vector_product

#pragma once

#include "engine/arith/fourier.h"

/// Products of long numbers with vectors of AVX2.
namespace zelvion::vector_product {

/// Whether this processor has AVX2.
bool isSupported() noexcept;

/// Computes the product; it has fewer limbs than `task` has room for.
void multiply(const fourier::Roots& roots, const fourier::Task& task) noexcept;

}  // namespace zelvion::vector_product

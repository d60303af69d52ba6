#pragma once

#include <span>
#include <vector>

#include "engine/arith/decimal.h"

namespace zelvion {

/// The product of two numbers given by their limbs; the result has a.size() + b.size() limbs, the highest of
/// which may be zero. Giving the same limbs twice makes a square, at two thirds of the cost.
std::vector<Decimal::Limb> multiplyLimbs(std::span<const Decimal::Limb> a, std::span<const Decimal::Limb> b);

}  // namespace zelvion

#include "engine/arith/multiply.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <complex>
#include <cstdint>
#include <limits>
#include <memory>
#include <numbers>
#include <utility>

#include "engine/arith/fourier.h"
#include "engine/arith/vector_product.h"

namespace zelvion {
namespace {

using Limb = Decimal::Limb;
using Limbs = std::span<const Limb>;

// From this length of the shorter operand on, transforms are faster than columns.
constexpr std::size_t kTransformLength = 192;
constexpr std::size_t kVectorLength = 64;

// The textbook way, with no carries until the end: a column adds at most
// kTransformLength products below 10^16, which 64 bits hold.
std::vector<Limb> multiplyColumns(Limbs a, Limbs b) {
  std::vector<std::uint64_t> columns(a.size() + b.size(), 0);
  for (std::size_t i = 0; i < a.size(); ++i) {
    const std::uint64_t factor = a[i];
    for (std::size_t j = 0; j < b.size(); ++j) columns[i + j] += factor * b[j];
  }
  std::vector<Limb> product(columns.size());
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    carry += columns[i];
    product[i] = static_cast<Limb>(carry % Decimal::kBase);
    carry /= Decimal::kBase;
  }
  return product;
}

using Wide = std::complex<long double>;
static_assert(std::numeric_limits<long double>::digits >= 64, "the roots need more than a double");
static_assert(FLT_EVAL_METHOD == 0 || FLT_EVAL_METHOD == 1, "sums of doubles are rounded to doubles");

// e^(2 pi i part)
Wide rootOfUnity(long double part) {
  const long double angle = 2 * std::numbers::pi_v<long double> * part;
  return {std::cos(angle), std::sin(angle)};
}

std::unique_ptr<const fourier::Roots> makeRoots() {
  // The polynomial x^4q - e^(2 pi i t) has the parts x^q - e^(2 pi i (t/4 + turn)), in this order. Those of
  // block b are the blocks 4b to 4b + 3, and t = 1/4 is where all begins.
  constexpr long double kTurns[] = {0, 0.5L, 0.25L, 0.75L};
  auto roots = std::make_unique<fourier::Roots>();
  std::vector<Wide> blocks(fourier::kMostBlocks, 1);
  long double scale = 0.25L;
  for (std::size_t done = 1; done < blocks.size(); done *= 4, scale /= 4) {
    for (std::size_t i = 1; i < 4; ++i) {
      const Wide turn = rootOfUnity(scale * kTurns[i]);
      for (std::size_t j = 0; j < done; ++j) blocks[i * done + j] = blocks[j] * turn;
    }
  }
  for (std::size_t b = 0; b < blocks.size(); ++b) {
    Wide power = 1;
    for (fourier::Root& root : roots->blocks[b]) {
      power *= blocks[b];
      root = {static_cast<double>(power.real()), static_cast<double>(power.imag())};
    }
  }
  const auto setLane = [](fourier::Complex& vector, std::size_t lane, const Wide& root) {
    vector.re[lane] = static_cast<double>(root.real());
    vector.im[lane] = static_cast<double>(root.imag());
  };
  for (std::size_t lane = 0; lane < 4; ++lane) {
    setLane(roots->first, lane, rootOfUnity(static_cast<long double>(lane) / 16));
    long double part = (kTurns[lane] + 1.0L / 16) / 4;
    for (auto& depth : roots->depths) {
      for (std::size_t i = 0; i < 3; ++i) {
        setLane(depth[i], lane, rootOfUnity(static_cast<long double>(i + 1) * part));
      }
      part /= 4;
    }
  }
  return roots;
}

std::vector<Limb> multiplyTransformed(Limbs a, Limbs b) {
  const std::size_t count = a.size() + b.size();
  // There is room for more limbs than the product has, and no power of four is greater.
  std::size_t size = 4;
  while (fourier::kMostLeaf * size * 4 <= count) size *= 4;
  size *= count / (size * 4) + 1;
  const bool isSquare = a.data() == b.data() && a.size() == b.size();
  std::vector<Limb> product(4 * size), other(isSquare ? 0 : 4 * size);
  std::copy(a.begin(), a.end(), product.begin());
  if (!isSquare) std::copy(b.begin(), b.end(), other.begin());
  const auto values = std::make_unique_for_overwrite<fourier::Complex[]>(isSquare ? size : 2 * size);
  const fourier::Task task = {size, product.data(), isSquare ? nullptr : other.data(), values.get()};
  static const auto roots = makeRoots();
  if (vector_product::isSupported()) {
    vector_product::multiply(*roots, task);
  } else {
    fourier::multiply(*roots, task);
  }
  product.resize(count);
  return product;
}

}  // namespace

std::vector<Limb> multiplyLimbs(Limbs a, Limbs b) {
  if (a.size() > b.size()) std::swap(a, b);
  if (a.size() < (vector_product::isSupported() ? kVectorLength : kTransformLength)) {
    return multiplyColumns(a, b);
  }
  if (a.size() + b.size() < fourier::kMostLimbs) return multiplyTransformed(a, b);
  // Too long for a transform: the halves of the longer one, each by the other number.
  const std::size_t half = b.size() / 2;
  std::vector<Limb> product = multiplyLimbs(a, b.first(half));
  const std::vector<Limb> high = multiplyLimbs(a, b.subspan(half));
  product.resize(a.size() + b.size());
  Limb carry = 0;
  for (std::size_t i = 0; i < high.size(); ++i) {
    const Limb sum = product[half + i] + high[i] + carry;
    carry = sum >= Decimal::kBase ? 1 : 0;
    product[half + i] = sum - carry * Decimal::kBase;
  }
  return product;
}

}  // namespace zelvion

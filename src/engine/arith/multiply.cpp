#include "engine/arith/multiply.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cstdint>
#include <utility>

namespace zelvion {
namespace {

using Limb = Decimal::Limb;
using Limbs = std::span<const Limb>;

// From this length of the shorter operand on, transforms are faster than columns.
constexpr std::size_t kTransformLength = 640;

// The textbook way, with the columns left without a carry until the end: a column adds at most
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

// The integers modulo the prime 2^64 - 2^32 + 1, whose multiplicative group has a subgroup of every order 2^n
// up to n = 32 and in which 2^64 is 2^32 - 1, so that a product is reduced by shifts (R. Solinas,
// "Generalized Mersenne Numbers", 1999).
namespace field {

constexpr std::uint64_t kPrime = 0xFFFFFFFF00000001;
constexpr std::uint64_t kEpsilon = 0xFFFFFFFF;  // 2^64 modulo the prime
constexpr std::uint64_t kGenerator = 7;

// All ones where `condition` holds: the values are random, and a branch on them would be guessed wrong half
// the time.
inline std::uint64_t mask(bool condition) {
  return std::uint64_t{0} - static_cast<std::uint64_t>(condition);
}

inline std::uint64_t subtract(std::uint64_t a, std::uint64_t b) {
  return a - b - (mask(a < b) & kEpsilon);
}

inline std::uint64_t add(std::uint64_t a, std::uint64_t b) {
  return subtract(a, kPrime - b);
}

inline std::uint64_t multiply(std::uint64_t a, std::uint64_t b) {
  __extension__ using Wide = unsigned __int128;
  const Wide product = static_cast<Wide>(a) * b;
  const auto low = static_cast<std::uint64_t>(product);
  const auto high = static_cast<std::uint64_t>(product >> 64);
  const std::uint64_t top = high >> 32;                                        // worth 2^96, which is -1
  const std::uint64_t middle = ((high & kEpsilon) << 32) - (high & kEpsilon);  // worth 2^64
  const std::uint64_t difference = low - top - (mask(low < top) & kEpsilon);
  std::uint64_t result = difference + middle;
  result += mask(result < middle) & kEpsilon;
  return result - (mask(result >= kPrime) & kPrime);
}

std::uint64_t power(std::uint64_t base, std::uint64_t exponent) {
  std::uint64_t result = 1;
  for (; exponent > 0; exponent >>= 1) {
    if (exponent & 1) result = multiply(result, base);
    base = multiply(base, base);
  }
  return result;
}

}  // namespace field

// A number theoretic transform of 2^n values (J. M. Pollard, "The Fast Fourier Transform in a Finite Field",
// 1971). `forward` leaves the values in bit-reversed order, `backward` takes them so: nothing is reordered.
class NumberTransform {
 public:
  explicit NumberTransform(std::size_t size) : roots_(size), backRoots_(size) {
    assert(std::has_single_bit(size));
    fillRoots(roots_, field::power(field::kGenerator, (field::kPrime - 1) / size));
    fillRoots(backRoots_,
              field::power(field::power(field::kGenerator, (field::kPrime - 1) / size), size - 1));
  }

  void forward(std::span<std::uint64_t> values) const {
    // Halves are finished one after the other, so that they stay in the cache once they fit there.
    const std::size_t half = values.size() / 2;
    if (half == 0) return;
    const std::uint64_t* root = roots_.data() + half;
    std::uint64_t* low = values.data();
    std::uint64_t* high = low + half;
    for (std::size_t i = 0; i < half; ++i) {
      const std::uint64_t a = low[i];
      const std::uint64_t b = high[i];
      low[i] = field::add(a, b);
      high[i] = field::multiply(field::subtract(a, b), root[i]);
    }
    forward(values.first(half));
    forward(values.last(half));
  }

  void backward(std::span<std::uint64_t> values) const {
    const std::size_t half = values.size() / 2;
    if (half == 0) return;
    backward(values.first(half));
    backward(values.last(half));
    const std::uint64_t* root = backRoots_.data() + half;
    std::uint64_t* low = values.data();
    std::uint64_t* high = low + half;
    for (std::size_t i = 0; i < half; ++i) {
      const std::uint64_t a = low[i];
      const std::uint64_t b = field::multiply(high[i], root[i]);
      low[i] = field::add(a, b);
      high[i] = field::subtract(a, b);
    }
  }

 private:
  // roots[half + i] is the i-th power of the primitive root of order 2 * half.
  static void fillRoots(std::vector<std::uint64_t>& roots, std::uint64_t root) {
    std::size_t half = roots.size() / 2;
    if (half == 0) return;
    roots[half] = 1;
    for (std::size_t i = 1; i < half; ++i) roots[half + i] = field::multiply(roots[half + i - 1], root);
    for (; half > 1; half /= 2) {
      for (std::size_t i = 0; i < half / 2; ++i) roots[half / 2 + i] = roots[half + 2 * i];
    }
  }

  std::vector<std::uint64_t> roots_;
  std::vector<std::uint64_t> backRoots_;
};

// The coefficients of a transform have six digits, four of them in the place of three limbs: a column of 2^24
// products stays below the prime, which is more digits than anybody multiplies here.
constexpr std::uint64_t kCoefficient = 1'000'000;

std::vector<std::uint64_t> toCoefficients(Limbs limbs, std::size_t size) {
  std::vector<std::uint64_t> coefficients(size, 0);
  for (std::size_t i = 0, j = 0; i < limbs.size(); i += 3, j += 4) {
    const Limb low = limbs[i];
    const Limb middle = i + 1 < limbs.size() ? limbs[i + 1] : 0;
    const Limb high = i + 2 < limbs.size() ? limbs[i + 2] : 0;
    coefficients[j] = low % 1'000'000;
    coefficients[j + 1] = low / 1'000'000 + middle % 10'000 * 100;
    coefficients[j + 2] = middle / 10'000 + high % 100 * 10'000;
    coefficients[j + 3] = high / 100;
  }
  return coefficients;
}

std::vector<Limb> fromCoefficients(std::span<const std::uint64_t> coefficients, std::uint64_t scale,
                                   std::size_t limbCount) {
  std::vector<Limb> limbs(limbCount);
  std::uint64_t carry = 0;
  std::array<Limb, 4> c{};
  for (std::size_t i = 0, j = 0; i < limbCount; i += 3, j += 4) {
    for (std::size_t part = 0; part < 4; ++part) {
      if (j + part < coefficients.size()) carry += field::multiply(coefficients[j + part], scale);
      c[part] = static_cast<Limb>(carry % kCoefficient);
      carry /= kCoefficient;
    }
    limbs[i] = c[0] + c[1] % 100 * 1'000'000;
    if (i + 1 < limbCount) limbs[i + 1] = c[1] / 100 + c[2] % 10'000 * 10'000;
    if (i + 2 < limbCount) limbs[i + 2] = c[2] / 10'000 + c[3] * 100;
  }
  return limbs;
}

std::vector<Limb> multiplyTransformed(Limbs a, Limbs b) {
  const auto coefficientCount = [](Limbs limbs) { return (limbs.size() + 2) / 3 * 4; };
  const std::size_t size = std::bit_ceil(coefficientCount(a) + coefficientCount(b));
  assert(size <= std::size_t{1} << 24);
  const NumberTransform transform(size);
  std::vector<std::uint64_t> product = toCoefficients(a, size);
  transform.forward(product);
  if (a.data() == b.data() && a.size() == b.size()) {
    for (std::uint64_t& value : product) value = field::multiply(value, value);
  } else {
    std::vector<std::uint64_t> other = toCoefficients(b, size);
    transform.forward(other);
    for (std::size_t i = 0; i < size; ++i) product[i] = field::multiply(product[i], other[i]);
  }
  transform.backward(product);
  const std::uint64_t scale = field::power(size, field::kPrime - 2);
  return fromCoefficients(product, scale, a.size() + b.size());
}

}  // namespace

std::vector<Limb> multiplyLimbs(Limbs a, Limbs b) {
  if (a.size() > b.size()) std::swap(a, b);
  return a.size() < kTransformLength ? multiplyColumns(a, b) : multiplyTransformed(a, b);
}

}  // namespace zelvion

#pragma once

#include <cstddef>
#include <cstdint>

// Products of long numbers by complex transforms. Two files include this, one of them compiled for AVX2, and
// each gets its own functions. Only types of the standard library are used here, for the reason given in
// vector_image.cpp.
//
// A number is a polynomial whose coefficients have four digits, from -5,000 to 5,000. The product is computed
// modulo x^(2m) + 1, of a higher degree than the product, and hence modulo x^m - i, with coefficients j and
// j + m as the real and imaginary parts of one. Modulo x^(4q) - w^4 becomes modulo x^q - w, x^q + w, x^q - iw
// and x^q + iw, and so on down to short polynomials, which are multiplied by columns; then all of it is
// undone (D. J. Bernstein, "Multidigit multiplication for mathematicians", 2001).
//
// Why rounding gives the exact coefficients: let u = 2^-53. A complex product is off by at most sqrt(5) u of
// its size (R. Brent, C. Percival and P. Zimmermann, "Error bounds on complex floating-point multiplication",
// 2007), a sum by u. Roots are off by 0.8 u and the factors made of two of them by 3.9 u, so that a stage
// with its factor and its two sums adds 3.9 u + sqrt(5) u + 2 u < 8.2 u.
// - Down, each of the s stages is a unitary map times 2, so that a and b arrive with errors of at most
//   8.2 s u of their Euclidean norms.
// - A leaf's columns of up to n products add errors of less than (sqrt(2) (n + 1) + 8) u of the products of
//   the norms of the two leaves, which are in all 4^s |a| |b| at most.
// - Up, each coefficient is a sum over the 4^s leaves of one coefficient each, times a root of unity: the s
//   factors and 2 s sums on its way leave it off by 8.2 s u of the sum of their sizes, then divided by 4^s.
// So no coefficient is off by more than (24.6 s + 1.5 n + 10) u |a| |b|, a little of second order included.
// With 25 * 10^6 for the square of a coefficient |a| |b| is at most 25 * 10^6 times the number of limbs, and
// for s = 8, n = 11 and all kMostLimbs the error is at most 0.45; for fewer stages it is less.
#pragma GCC diagnostic ignored "-Wpsabi"  // no function that takes vectors is called from elsewhere

namespace zelvion::fourier {

/// A root of unity.
struct Root {
  double re;
  double im;
};

/// Four complex numbers. On a processor without vectors this wide the compiler uses narrower ones.
using Vector = double __attribute__((vector_size(32)));
struct Complex {
  Vector re;
  Vector im;
};

/// One stage goes across the four lanes of the vectors and up to so many go inside them.
constexpr std::size_t kMostDepths = 7;
constexpr std::size_t kMostBlocks = std::size_t{1} << (2 * (kMostDepths - 1));
/// A polynomial of at most so many coefficients is a leaf.
constexpr std::size_t kMostLeaf = 15;
/// A product of two numbers that have fewer limbs than this together is exact.
constexpr std::size_t kMostLimbs = std::size_t{11} << (2 * (kMostDepths + 1));

/// What the stages multiply by: the powers 1, 2 and 3 of a root that is the product of two, one for the block
/// and one for depth and lane. Each is off by at most 0.8 * 2^-53.
struct Roots {
  Root blocks[kMostBlocks][3];
  Complex depths[kMostDepths][3];
  Complex first;  ///< for the stage across the lanes: the powers 0 to 3 of a root, one in each lane
};

/// A product to compute.
struct Task {
  std::size_t size;            ///< a power of four, of 4 or more, times up to kMostLeaf
  std::uint32_t* limbs;        ///< 4 * size: the first factor with zeros behind it, which becomes the product
  const std::uint32_t* other;  ///< as many for the second factor; null for the square of the first
  Complex* values;             ///< room for `size` vectors for each factor
};

namespace {

constexpr double kLimb = 1e8;
constexpr double kHalf = 1e4;  // a coefficient has half the digits of a limb
constexpr std::int32_t kBase = 100'000'000;

inline Complex operator+(const Complex& a, const Complex& b) { return {a.re + b.re, a.im + b.im}; }
inline Complex operator-(const Complex& a, const Complex& b) { return {a.re - b.re, a.im - b.im}; }
inline Complex operator*(const Complex& a, const Complex& b) {
  return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
inline Complex conjugate(const Complex& a) { return {a.re, -a.im}; }
inline Complex timesI(const Complex& a) { return {-a.im, a.re}; }

// Rounds each lane, which is below 2^51: the sum has no bits left for the fraction.
inline Vector rounded(const Vector& v) {
  constexpr double kShift = 0x1.8p52;
  return (v + kShift) - kShift;
}

struct Factors {
  Complex of[3];
};

inline Factors factorsOf(const Roots& roots, std::size_t depth, std::size_t block) {
  const auto factor = [&](std::size_t i) {
    const Root& root = roots.blocks[block][i];
    const Vector zero{};
    return roots.depths[depth][i] * Complex{zero + root.re, zero + root.im};
  };
  return {{factor(0), factor(1), factor(2)}};
}

// A polynomial modulo x^(4q) - w^4 becomes four modulo x^q - w, x^q + w, x^q - iw and x^q + iw.
inline void split(Complex* z, std::size_t q, const Factors& w) {
  for (std::size_t i = 0; i < q; ++i) {
    const Complex a = z[i], b = z[q + i] * w.of[0], c = z[2 * q + i] * w.of[1], d = z[3 * q + i] * w.of[2];
    const Complex e = a + c, f = b + d, g = a - c, h = timesI(b - d);
    z[i] = e + f;
    z[q + i] = e - f;
    z[2 * q + i] = g + h;
    z[3 * q + i] = g - h;
  }
}

// The inverse, times four.
inline void join(Complex* z, std::size_t q, const Factors& w) {
  const Complex back[3] = {conjugate(w.of[0]), conjugate(w.of[1]), conjugate(w.of[2])};
  for (std::size_t i = 0; i < q; ++i) {
    const Complex e = z[i] + z[q + i], f = z[i] - z[q + i];
    const Complex g = z[2 * q + i] + z[3 * q + i], h = timesI(z[3 * q + i] - z[2 * q + i]);
    z[i] = e + g;
    z[q + i] = (f + h) * back[0];
    z[2 * q + i] = (e - g) * back[1];
    z[3 * q + i] = (f - h) * back[2];
  }
}

// a becomes a * b modulo x^size - root.
inline void multiplyLeaf(Complex* a, const Complex* b, std::size_t size, const Complex& root) {
  Complex product[kMostLeaf];
  for (std::size_t j = 0; j < size; ++j) {
    const auto column = [&](std::size_t first, std::size_t end, std::size_t sum) {
      Vector rr{}, ii{}, ri{}, ir{};
      for (std::size_t i = first; i < end; ++i) {
        rr += a[i].re * b[sum - i].re;
        ii += a[i].im * b[sum - i].im;
        ri += a[i].re * b[sum - i].im;
        ir += a[i].im * b[sum - i].re;
      }
      return Complex{rr - ii, ri + ir};
    };
    product[j] = column(0, j + 1, j) + column(j + 1, size, size + j) * root;
  }
  for (std::size_t j = 0; j < size; ++j) a[j] = product[j];
}

// z becomes z * y, block by block down to the leaves, so that what is in the cache is finished there.
inline void convolve(const Roots& roots, Complex* z, Complex* y, std::size_t size, std::size_t depth,
                     std::size_t block) {
  const std::size_t q = size / 4;
  const Factors w = factorsOf(roots, depth, block);
  split(z, q, w);
  if (y != z) split(y, q, w);
  if (q <= kMostLeaf) {
    const Complex turned = timesI(w.of[0]);
    multiplyLeaf(z, y, q, w.of[0]);
    multiplyLeaf(z + q, y + q, q, Complex{} - w.of[0]);
    multiplyLeaf(z + 2 * q, y + 2 * q, q, turned);
    multiplyLeaf(z + 3 * q, y + 3 * q, q, Complex{} - turned);
  } else {
    for (std::size_t i = 0; i < 4; ++i) {
      convolve(roots, z + i * q, y + i * q, q, depth + 1, 4 * block + i);
    }
  }
  join(z, q, w);
}

// The stage across the four lanes, without the factors.
inline Complex splitLanes(const Complex& t) {
  const Vector upper = {1, 1, -1, -1}, odd = {1, -1, 1, -1};
  const Complex p = {__builtin_shufflevector(t.re, t.re, 2, 3, 0, 1) + upper * t.re,
                     __builtin_shufflevector(t.im, t.im, 2, 3, 0, 1) + upper * t.im};
  const Complex s = {__builtin_shufflevector(p.re, -p.im, 0, 1, 2, 7),
                     __builtin_shufflevector(p.im, p.re, 0, 1, 2, 7)};
  return {__builtin_shufflevector(s.re, s.re, 1, 0, 3, 2) + odd * s.re,
          __builtin_shufflevector(s.im, s.im, 1, 0, 3, 2) + odd * s.im};
}
inline Complex joinLanes(const Complex& t) {
  const Vector upper = {1, 1, -1, -1}, odd = {1, -1, 1, -1};
  const Complex p = {__builtin_shufflevector(t.re, t.re, 1, 0, 3, 2) + odd * t.re,
                     __builtin_shufflevector(t.im, t.im, 1, 0, 3, 2) + odd * t.im};
  const Complex s = {__builtin_shufflevector(p.re, p.im, 0, 1, 2, 7),
                     __builtin_shufflevector(p.im, -p.re, 0, 1, 2, 7)};
  return {__builtin_shufflevector(s.re, s.re, 2, 3, 0, 1) + upper * s.re,
          __builtin_shufflevector(s.im, s.im, 2, 3, 0, 1) + upper * s.im};
}

using Ints = std::int32_t __attribute__((vector_size(16)));

inline Ints gather(const std::uint32_t* limbs, std::size_t stride) {
  const auto at = [&](std::size_t i) { return static_cast<std::int32_t>(limbs[i * stride]); };
  const Ints four = {at(0), at(1), at(2), at(3)};
  return four;
}

// Limbs from -5 * 10^7 to 5 * 10^7 instead of from 0 on. `carry` is -1 where the limb before gave one.
inline Vector balanced(Ints limbs, Ints& carry) {
  const Ints over = limbs >= kBase / 2;
  const Ints result = limbs - (over & kBase) - carry;
  carry = over;
  return __builtin_convertvector(result, Vector);
}

// Lane s of a vector is stream s of the limbs in the real part and stream s + 4 in the imaginary one.
inline void load(const Roots& roots, const std::uint32_t* limbs, Complex* z, std::size_t size) {
  const std::size_t stride = size / 2;
  const auto carryInto = [&](std::size_t stream) {
    return stream > 0 && limbs[stream * stride - 1] >= kBase / 2 ? -1 : 0;
  };
  Ints carryRe = {carryInto(0), carryInto(1), carryInto(2), carryInto(3)};
  Ints carryIm = {carryInto(4), carryInto(5), carryInto(6), carryInto(7)};
  for (std::size_t i = 0; i < stride; ++i) {
    const Complex both = {balanced(gather(limbs + i, stride), carryRe),
                          balanced(gather(limbs + 4 * stride + i, stride), carryIm)};
    const Complex high = {rounded(both.re * (1 / kHalf)), rounded(both.im * (1 / kHalf))};
    const Complex low = {both.re - high.re * kHalf, both.im - high.im * kHalf};
    z[2 * i] = splitLanes(low * roots.first);
    z[2 * i + 1] = splitLanes(high * roots.first);
  }
}

struct Carry {
  Vector value;
  Ints borrow;  // -1 where the limb before was negative
};

inline Ints limbsOf(const Vector& first, const Vector& second, Carry& carry) {
  const Vector low = rounded(first), high = rounded(second);
  const Vector top = rounded(high * (1 / kHalf));
  const Vector sum = low + (high - top * kHalf) * kHalf + carry.value;
  const Vector quotient = rounded(sum * (1 / kLimb));
  const Ints limbs = __builtin_convertvector(sum - quotient * kLimb, Ints) + carry.borrow;
  carry = {top + quotient, limbs < 0};
  return limbs + (carry.borrow & kBase);
}

inline void store(const Roots& roots, const Complex* z, std::uint32_t* limbs, std::size_t size,
                  double scale) {
  const std::size_t stride = size / 2;
  const Complex back = {roots.first.re * scale, -roots.first.im * scale};
  Carry carryRe{}, carryIm{};
  for (std::size_t i = 0; i < stride; ++i) {
    const Complex low = joinLanes(z[2 * i]) * back;
    const Complex high = joinLanes(z[2 * i + 1]) * back;
    const Ints re = limbsOf(low.re, high.re, carryRe), im = limbsOf(low.im, high.im, carryIm);
    for (std::size_t lane = 0; lane < 4; ++lane) {
      limbs[lane * stride + i] = static_cast<std::uint32_t>(re[lane]);
      limbs[(lane + 4) * stride + i] = static_cast<std::uint32_t>(im[lane]);
    }
  }
  // The carry out of a stream goes into the next one. Meanwhile the whole may be negative or too large: it is
  // correct modulo the power of ten behind the last limb.
  for (std::size_t stream = 1; stream < 8; ++stream) {
    const Carry& left = stream > 4 ? carryIm : carryRe;
    const std::size_t lane = (stream - 1) % 4;
    std::int64_t carry = static_cast<std::int64_t>(left.value[lane]) + left.borrow[lane];
    for (std::size_t i = stream * stride; carry != 0 && i < 8 * stride; ++i) {
      carry += limbs[i];
      const std::int64_t quotient = carry / kBase - (carry % kBase < 0 ? 1 : 0);
      limbs[i] = static_cast<std::uint32_t>(carry - quotient * kBase);
      carry = quotient;
    }
  }
}

inline void multiply(const Roots& roots, const Task& task) {
  load(roots, task.limbs, task.values, task.size);
  Complex* other = task.values;
  if (task.other != nullptr) {
    other += task.size;
    load(roots, task.other, other, task.size);
  }
  convolve(roots, task.values, other, task.size, 0, 0);
  double scale = 0.25;
  std::size_t rest = task.size;
  do {
    rest /= 4;
    scale /= 4;
  } while (rest > kMostLeaf);
  store(roots, task.values, task.limbs, task.size, scale);
}

}  // namespace
}  // namespace zelvion::fourier

// What this machine can do at best on one core: additions of 64-bit numbers in the first-level cache and in
// registers, multiplications by a constant, and reading memory.

#include <array>
#include <cstdint>
#include <cstdio>
#include <numeric>
#include <vector>

#include "measure.h"

namespace zelvion::bench {
namespace {

// Keeps a value that nobody needs.
template <typename Value>
void keep(const Value& value) {
  asm volatile("" : : "r,m"(value) : "memory");
}

template <typename Work>
double secondsOf(const Work& work) {
  Measure measure;
  measure.run([] {}, work);
  return measure.seconds;
}

void tell(const char* what, double count, double seconds, const char* unit) {
  std::printf("%-46s %8.2f %s\n", what, count / seconds / 1e9, unit);
}

void sumOf(const char* what, std::size_t words, int rounds) {
  const std::vector<std::uint64_t> numbers(words, 1);
  const double seconds = secondsOf([&] {
    for (int i = 0; i < rounds; ++i) keep(std::accumulate(numbers.begin(), numbers.end(), std::uint64_t{0}));
  });
  const double bytes = static_cast<double>(words * sizeof(std::uint64_t)) * rounds;
  tell(what, bytes, seconds, "GB/s");
}

// Eight chains at once, so that what counts is how many are finished, not how long one takes.
template <typename Step>
void chains(const char* what, const Step& step) {
  constexpr int kRounds = 10'000'000;
  const double seconds = secondsOf([&] {
    std::array<std::uint64_t, 8> values{1, 2, 3, 4, 5, 6, 7, 8};
    for (int i = 0; i < kRounds; ++i) {
      for (std::uint64_t& value : values) {
        value = step(value);
        asm volatile("" : "+r"(value));
      }
    }
    keep(values[0]);
  });
  tell(what, 8.0 * kRounds, seconds, "G/s");
}

}  // namespace
}  // namespace zelvion::bench

int main() {
  using namespace zelvion::bench;
  chains("additions of 64 bits", [](std::uint64_t value) { return value + 3; });
  chains("products of 64 by 64 bits", [](std::uint64_t value) { return value * 0x9E3779B97F4A7C15; });
  sumOf("reading 16 KiB and adding up (first level)", std::size_t{1} << 11, 10'000);
  sumOf("reading 256 KiB and adding up (second level)", std::size_t{1} << 15, 1'000);
  sumOf("reading 8 MiB and adding up (third level)", std::size_t{1} << 20, 20);
  sumOf("reading 256 MiB and adding up (memory)", std::size_t{1} << 25, 1);
}

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include "engine/cycles/cycle_finder.h"
#include "engine/fixedpoints/complete_search.h"
#include "engine/fixedpoints/multiset_walk.h"
#include "engine/transform/transformation.h"
#include "form/shell/velmoire.h"

namespace zelvion {
namespace {

using benchmark::Counter;
using benchmark::DoNotOptimize;
using benchmark::State;

// The time of one of `count` equal parts of an iteration.
Counter timeOfOne(double count) {
  return Counter(count, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

void setDigits(State& state, const Decimal& image) {
  const auto digits = static_cast<double>(image.digits());
  state.counters["digits"] = digits;
  state.counters["time/digit"] = timeOfOne(digits);
}

// Images ----------------------------------------------------------------------------------------------------

void FirstImage(State& state) {
  const auto k = static_cast<std::int32_t>(state.range(0));
  Decimal image;
  for (auto _ : state) {
    Transformation transformation(k);
    transformation.apply(silhouetteOf("789"), image);
    DoNotOptimize(image);
  }
  setDigits(state, image);
}

void LaterImage(State& state) {
  Transformation transformation(static_cast<std::int32_t>(state.range(0)));
  Decimal image;
  Silhouette silhouette = transformation.apply(silhouetteOf("789"), image);
  for (auto _ : state) {
    silhouette = transformation.apply(silhouette, image);
    DoNotOptimize(image);
  }
  setDigits(state, image);
}

void imageSizes(benchmark::internal::Benchmark* image) {
  image->ArgName("k")->Arg(3)->Arg(39)->Unit(benchmark::kMicrosecond);
  for (int k = 1'000; k <= 1'000'000; k *= 10) image->Arg(k);
}

BENCHMARK(FirstImage)->Apply(imageSizes);
BENCHMARK(LaterImage)->Apply(imageSizes)->Arg(34'000);

// Cycles ----------------------------------------------------------------------------------------------------

// Goes on from 789 until an iterate comes back, or for as many steps.
void CycleSearch(State& state) {
  const auto limit = static_cast<std::int32_t>(state.range(1));
  std::int32_t steps = 0;
  for (auto _ : state) {
    DigitPower power(std::to_string(state.range(0)));
    CycleFinder finder(power, "789");
    const std::optional<Return> cycle = finder.advance(limit);
    steps = cycle ? cycle->step : limit;
  }
  state.counters["steps"] = steps;
  state.counters["time/step"] = timeOfOne(steps);
}

BENCHMARK(CycleSearch)->ArgNames({"k", "limit"})->ArgsProduct({{24, 60, 100, 148}, {1'000'000}});
BENCHMARK(CycleSearch)->ArgNames({"k", "limit"})->ArgsProduct({{308}, {1'000, 10'000, 100'000, 1'000'000}});

// Fixed points ----------------------------------------------------------------------------------------------

// The candidates of 2 to 12 digits, with the nines that order k has in front of them.
void Cascade(State& state) {
  const auto k = static_cast<std::int32_t>(state.range(0));
  const auto lastDigits = static_cast<int>(state.range(1));
  std::int32_t candidates = 0;
  std::int32_t survivors = 0;
  for (auto _ : state) {
    candidates = survivors = 0;
    DigitPower power(k);
    MultisetWalk walk(power, k > 12 ? k - 12 : 0);
    for (int digits = 2; digits <= lastDigits; ++digits) {
      candidates += walk.run(digits, [&](const std::string&) { ++survivors; });
    }
  }
  state.counters["survivors"] = survivors;
  state.counters["time/candidate"] = timeOfOne(candidates);
}

BENCHMARK(Cascade)->ArgNames({"k", "digits"})->Args({3, 3})->Args({11, 12})->Args({20, 12})->Args({58, 12});

void CompleteSearch(State& state) {
  std::size_t found = 0;
  for (auto _ : state) {
    found = 0;
    for (int order = 1; order <= state.range(0); ++order) found += narcissisticNumbers(order).size();
  }
  state.counters["found"] = static_cast<double>(found);
}

BENCHMARK(CompleteSearch)->ArgName("orders 1 to")->Arg(39)->Arg(60)->Unit(benchmark::kMillisecond);

// Arithmetic on texts ---------------------------------------------------------------------------------------

std::string sevens(const State& state) { return std::string(static_cast<std::size_t>(state.range(0)), '7'); }

template <typename Operation>
void timeText(State& state, const Operation& operation) {
  for (auto _ : state) DoNotOptimize(operation());
  state.counters["time/digit"] = timeOfOne(static_cast<double>(state.range(0)));
}

void PlusPlus(State& state) {
  const std::string number = sevens(state);
  timeText(state, [&] { return Velmoire::Plusplus(number, number); });
}

void MulCalcul(State& state) {
  const std::string number = sevens(state);
  timeText(state, [&] { return Velmoire::MulCalcul(number, 123'456'789); });
}

// A power of 7 with as many digits.
void PuisCalcul(State& state) {
  const auto exponent = static_cast<std::int32_t>(static_cast<double>(state.range(0)) / 0.845098);
  timeText(state, [&] { return Velmoire::PuisCalcul("7", exponent); });
}

void Product(State& state) {
  const Decimal a = Decimal::parse(sevens(state));
  const Decimal b = Decimal::parse(sevens(state));
  timeText(state, [&] { return a * b; });
}

BENCHMARK(PlusPlus)->ArgName("digits")->Arg(1'000)->Arg(30'000);
BENCHMARK(MulCalcul)->ArgName("digits")->Arg(1'000)->Arg(30'000);
BENCHMARK(PuisCalcul)->ArgName("digits")->Arg(1'000)->Arg(30'000);
BENCHMARK(Product)->ArgName("digits")->Arg(1'000)->Arg(30'000)->Arg(1'000'000);

// What this machine can do at best on one core
// ----------------------------------------------------------------

// Eight chains at once, so that what counts is how many steps are finished, not how long one takes.
template <typename Step>
void chains(State& state, const Step& step) {
  std::array<std::uint64_t, 8> values{1, 2, 3, 4, 5, 6, 7, 8};
  for (auto _ : state) {
    for (std::uint64_t& value : values) {
      value = step(value);
      DoNotOptimize(value);
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(values.size()) * state.iterations());
}

void Additions(State& state) {
  chains(state, [](std::uint64_t value) { return value + 3; });
}

void Products(State& state) {
  chains(state, [](std::uint64_t value) { return value * 0x9E3779B97F4A7C15; });
}

// Adds up so many bytes: from the first, second and third level of the cache, and from memory.
void Reading(State& state) {
  const std::vector<std::uint64_t> numbers(static_cast<std::size_t>(state.range(0)) / sizeof(std::uint64_t),
                                           1);
  for (auto _ : state) DoNotOptimize(std::accumulate(numbers.begin(), numbers.end(), std::uint64_t{0}));
  state.SetBytesProcessed(state.range(0) * state.iterations());
}

BENCHMARK(Additions);
BENCHMARK(Products);
BENCHMARK(Reading)->ArgName("bytes")->Arg(16 << 10)->Arg(256 << 10)->Arg(8 << 20)->Arg(256 << 20);

}  // namespace
}  // namespace zelvion

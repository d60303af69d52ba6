#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

#include "quiet_desktop.h"

namespace zelvion::bench {
namespace {

using benchmark::Counter;
using benchmark::State;

// Presses again and again with this k and p = 789; what is shown and written is part of the press.
template <typename Press>
void press(State& state, const std::string& k, const Press& action) {
  Program program(k, "789");
  for (auto _ : state) {
    state.PauseTiming();
    program.desktop.clear();
    program.form.entier.Text = "789";
    state.ResumeTiming();
    action(program.form);
  }
  state.counters["shown"] = static_cast<double>(program.form.RichTextBox1.Text.size());
}

// A press of a button, with k from the arguments.
void press(State& state, std::string_view button) {
  press(state, std::to_string(state.range(0)), [&](Velmoire& form) { form.click(button); });
}

Counter timeOfOne(double count) {
  return Counter(count, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

void Image(State& state) {
  press(state, "Command10");
}

void Iterates1000(State& state) {
  press(state, "Command6");
  state.counters["time/iterate"] = timeOfOne(1'000);
}

void CycleSearch(State& state) {
  press(state, "Command4");
}

void Cascade(State& state) {
  press(state, "Command5");
}

BENCHMARK(Image)->ArgName("k")->Arg(3)->Arg(39)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(Iterates1000)
    ->ArgName("k")
    ->Arg(3)
    ->Arg(100)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(CycleSearch)->ArgName("k")->Arg(24)->Arg(60)->Arg(100)->Arg(148)->Unit(benchmark::kMicrosecond);
BENCHMARK(Cascade)->ArgName("k")->Arg(3)->Arg(11)->Arg(20)->Arg(58)->Unit(benchmark::kMicrosecond);

// The enumerators of high orders, which set k themselves.
void HighOrder(State& state, void (Velmoire::*enumerator)(), double candidates) {
  press(state, "3", [&](Velmoire& form) { (form.*enumerator)(); });
  state.counters["candidates"] = candidates;
  state.counters["time/candidate"] = timeOfOne(candidates);
}

void highOrder(const char* name, void (Velmoire::*enumerator)(), double candidates) {
  benchmark::RegisterBenchmark(name, HighOrder, enumerator, candidates)->Unit(benchmark::kMicrosecond);
}

const bool kRegistered = [] {
  highOrder("boucle13", &Velmoire::boucle13, 203'490);
  highOrder("boucle14", &Velmoire::boucle14, 319'770);
  highOrder("boucle15", &Velmoire::boucle15, 490'314);
  highOrder("boucle16", &Velmoire::boucle16, 735'471);
  highOrder("boucle13K58", &Velmoire::boucle13K58, 203'490);
  highOrder("boucle9K59", &Velmoire::boucle9K59, 24'310);
  highOrder("boucle5k60", &Velmoire::boucle5k60, 1'287);
  return true;
}();

}  // namespace
}  // namespace zelvion::bench

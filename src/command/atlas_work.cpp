#include "command/atlas_work.h"

#include <sys/mman.h>

#include <algorithm>
#include <stdexcept>

#include "command/progress_line.h"
#include "command/subcommands.h"
#include "command/typography.h"
#include "engine/atlas/range.h"

namespace zelvion::command {
namespace {

constexpr std::int32_t kLastCountedWhole = 45;
constexpr int kDigitsBeyond = 18;

// Runs an engine with a line of progress that says what it is about.
template <typename Engine>
auto withProgress(std::int32_t k, const char* what, Environment& environment, const Engine& engine) {
  Progress& progress = environment.progress;
  progress.done = 0;
  progress.pieces = 0;
  progress.found = 0;
  const ProgressLine line(environment, [&, k, what] {
    const double pieces = std::max(1.0, static_cast<double>(progress.pieces));
    return ProgressLine::Standing{
        static_cast<double>(progress.done) / pieces,
        "k = " + std::to_string(k) + " · " + what + " · " + counted(progress.found, "cycle")};
  });
  return engine(progress);
}

}  // namespace

AtlasWork::AtlasWork(const Arguments& arguments, const Environment& environment)
    : memory(static_cast<std::size_t>(arguments.integer("memoire", 512, 1, 1'000'000)) << 20),
      threads(threadsOf(arguments, environment)) {
  if (arguments.has("chiffres")) digits = arguments.integer("chiffres", 0, 1, atlas::kMaxCountedDigits);
}

int AtlasWork::digitsFor(std::int32_t k) const {
  const int all = atlas::rangeDigits(k);
  if (digits) return std::min(*digits, all);
  return k <= kLastCountedWhole ? all : kDigitsBeyond;
}

std::optional<std::vector<atlas::Cycle>> findCycles(std::int32_t k, const AtlasWork& work,
                                                    Environment& environment) {
  return withProgress(k, "liste", environment, [&](Progress& progress) {
    return atlas::cyclesOf(k, work.threads, progress, work.part);
  });
}

std::optional<atlas::Basins> countBasins(std::int32_t k, const AtlasWork& work, Environment& environment) {
  const atlas::TableMemory memory{
      work.memory, [](void* block, std::size_t bytes) { ::madvise(block, bytes, MADV_HUGEPAGE); }};
  return withProgress(k, "bassins", environment, [&](Progress& progress) {
    return atlas::basinsOf(k, work.digitsFor(k), work.threads, progress, memory, work.part);
  });
}

void tellInterrupted(std::int32_t k, Environment& environment) {
  environment.err << typeset("velmoire : interrompu pendant la puissance " + std::to_string(k) +
                             ", dont rien n'est donné.\n");
}

AtlasFacts factsOf(std::int32_t k, std::vector<atlas::Cycle> cycles, atlas::Basins basins) {
  AtlasFacts facts{k, atlas::rangeDigits(k), std::move(cycles), std::move(basins)};
  const auto isListed = [&](const atlas::Basin& basin) {
    return std::ranges::binary_search(facts.cycles, basin.cycle);
  };
  const bool agree = std::ranges::all_of(facts.basins.basins, isListed) &&
                     (!facts.countsAll() || facts.basins.basins.size() == facts.cycles.size());
  if (!agree)
    throw std::runtime_error("Les deux calculs ne trouvent pas les mêmes cycles pour k = " +
                             std::to_string(k) + " : aucun résultat n'est donné.");
  return facts;
}

std::optional<AtlasFacts> findFacts(std::int32_t k, const AtlasWork& work, Environment& environment) {
  auto cycles = findCycles(k, work, environment);
  if (!cycles) return std::nullopt;
  auto basins = countBasins(k, work, environment);
  if (!basins) return std::nullopt;
  return factsOf(k, std::move(*cycles), std::move(*basins));
}

}  // namespace zelvion::command

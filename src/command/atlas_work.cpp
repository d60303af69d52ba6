#include "command/atlas_work.h"

#include <sys/mman.h>

#include <algorithm>

#include "command/progress_line.h"
#include "command/subcommands.h"
#include "engine/atlas/range.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

// The number of parts of a resumable search. Each takes seconds at least, since parts do not share what they
// find out.
std::uint32_t partsFor(std::int32_t k, const AtlasWork& work) {
  const std::int32_t size = std::max(2 * k / 3, work.withBasins ? work.digitsFor(k) - 6 : 0);
  return size < 20 ? 1 : size < 34 ? 8 : size < 48 ? 32 : 128;
}

std::string callOf(IntegerRange powers, const AtlasWork& work) {
  std::string call = "cycles -k " + textOf(powers);
  if (work.withBasins) call += " --bassins";
  if (work.digits) call += " --chiffres " + std::to_string(*work.digits);
  return call;
}

// Runs an engine with a line of progress.
template <typename Engine>
auto withProgress(std::int32_t k, const char* what, Stretch stretch, Environment& environment,
                  const Engine& engine) {
  Progress& progress = environment.progress;
  progress.done = 0;
  progress.pieces = 0;
  progress.found = 0;
  const ProgressLine line(environment, [&, k, what, stretch] {
    const double pieces = std::max(1.0, static_cast<double>(progress.pieces));
    return ProgressLine::Standing{
        (stretch.done + static_cast<double>(progress.done) / pieces) / stretch.count,
        "k = " + std::to_string(k) + " · " + what + " · " + pages::counted(progress.found, "cycle")};
  });
  return engine(progress);
}

atlas::TableMemory tableOf(const AtlasWork& work) {
  return {work.memory, [](void* block, std::size_t bytes) { ::madvise(block, bytes, MADV_HUGEPAGE); }};
}

}  // namespace

AtlasWork::AtlasWork(const Arguments& arguments, const Environment& environment, IntegerRange powers,
                     bool basins)
    : withBasins(basins),
      memory(static_cast<std::size_t>(arguments.integer("memoire", 512, 1, 1'000'000)) << 20),
      threads(threadsOf(arguments, environment)) {
  if (arguments.has("chiffres")) digits = arguments.integer("chiffres", 0, 1, atlas::kMaxCountedDigits);
  resumption = resumptionOf(arguments, callOf(powers, *this));
}

int AtlasWork::digitsFor(std::int32_t k) const {
  return std::max(leastDigits, digits ? std::min(*digits, atlas::rangeDigits(k)) : atlas::usualDigits(k));
}

std::optional<SearchPart> findPart(std::int32_t k, Part part, const AtlasWork& work, Environment& environment,
                                   Stretch stretch) {
  SearchPart found{k, part, {}, {}, {}};
  auto cycles = withProgress(k, "liste", stretch, environment, [&](Progress& progress) {
    return atlas::cyclesOf(k, work.threads, progress, part);
  });
  if (!cycles) return std::nullopt;
  found.cycles = std::move(*cycles);
  if (!work.withBasins) return found;
  found.basins = withProgress(k, "bassins", stretch, environment, [&](Progress& progress) {
    return atlas::basinsOf(k, work.digitsFor(k), work.threads, progress, tableOf(work), part);
  });
  if (!found.basins) return std::nullopt;
  return found;
}

std::optional<pages::AtlasFacts> findFacts(std::int32_t k, AtlasWork& work, Environment& environment) {
  auto found = [&] {
    if (!work.resumption) return findPart(k, {}, work, environment);
    return work.resumption->search(k, partsFor(k, work), [&](Part part, std::uint32_t done) {
      return findPart(k, part, work, environment, {done, part.count});
    });
  }();
  if (!found) return std::nullopt;
  return factsOf(std::move(*found));
}

pages::AtlasFacts factsOf(SearchPart whole) {
  if (whole.basins) return pages::factsOf(whole.k, std::move(whole.cycles), std::move(*whole.basins));
  return {whole.k, atlas::rangeDigits(whole.k), std::move(whole.cycles), {}};
}

atlas::FarRecords findRecordsBeyond(const atlas::Basins& counted, const AtlasWork& work,
                                    Environment& environment) {
  constexpr std::uint32_t kMostDigits = 100'000;
  return withProgress(counted.k, "au-delà", {}, environment, [&](Progress& progress) {
    return atlas::recordsBeyond(counted, work.threads, progress, kMostDigits, tableOf(work));
  });
}

}  // namespace zelvion::command

#include "command/powers_search.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "engine/fixedpoints/complete_search.h"
#include "pages/typography.h"

namespace zelvion::command {

PowersSearch::PowersSearch(const Arguments& arguments, Output& output, Environment& environment,
                           IntegerRange powers, std::span<const Column> columns)
    : output_(output),
      progress_(environment.progress),
      threads_(threadsOf(arguments, environment)),
      powers_(powers),
      power_(powers.first),
      line_(environment, [this] { return standing(); }) {
  if (output.format() != Format::kText) records_.emplace(output, columns);
}

int PowersSearch::search(int k, int first, int last) {
  begin(k, {}, 0);
  return findFixedPoints(k, first, last, threads_, progress_, [&](const Decimal& number) {
    write(k, number);
    flush();
  });
}

std::optional<SearchPart> PowersSearch::searchPart(int k, Part part, std::uint32_t done) {
  begin(k, part, done);
  SearchPart found{k, part, std::vector<Decimal>(), {}, {}};
  findFixedPoints(
      k, 1, longestFixedPoint(k), threads_, progress_,
      [&](const Decimal& number) { found.points->push_back(number); }, part);
  if (stopped()) return std::nullopt;
  return found;
}

void PowersSearch::write(const SearchPart& whole) {
  numbers_ = 0;
  for (const Decimal& number : *whole.points) write(whole.k, number);
}

void PowersSearch::flush() {
  line_.hide();
  output_.flush();
}

void PowersSearch::begin(int k, Part part, std::uint32_t done) {
  power_ = k;
  part_ = done;
  parts_ = part.count;
  numbers_ = 0;
}

void PowersSearch::write(int k, const Decimal& number) {
  ++numbers_;
  if (number > Decimal(1)) ++others_;
  if (records_) {
    records_->field(static_cast<std::size_t>(k)).field(number.digits()).field(number.text());
  } else {
    output_ << "  " << number.text();
    output_.endLine();
  }
}

ProgressLine::Standing PowersSearch::standing() const {
  constexpr double kGrowth = 1.12;  // how much longer one power takes than the one before
  const int power = power_;
  const double pieces = std::max(1.0, static_cast<double>(progress_.pieces));
  const double share = (part_ + static_cast<double>(progress_.done) / pieces) / parts_;
  const auto workBelow = [](int k) { return std::pow(kGrowth, k); };
  const double begin = workBelow(powers_.first);
  const double now = workBelow(power);
  const double all = workBelow(powers_.last + 1) - begin;
  return {(now - begin + share * (workBelow(power + 1) - now)) / all,
          "k = " + std::to_string(power) + " · " + pages::counted(progress_.found, "nombre") + " trouvé" +
              (progress_.found > 1 ? "s" : "")};
}

}  // namespace zelvion::command

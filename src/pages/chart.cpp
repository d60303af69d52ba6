#include "pages/chart.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "pages/facts.h"
#include "pages/typography.h"

namespace zelvion::pages {
namespace {

using std::numbers::pi;

/// A round number of at least `value`: 1, 2 or 5 times a power of ten.
double roundAbove(double value) {
  if (value <= 0) return 1;
  const double unit = std::pow(10, std::floor(std::log10(value)));
  for (const double times : {1.0, 2.0, 5.0}) {
    if (times * unit >= value * (1 - 1e-12)) return times * unit;
  }
  return 10 * unit;
}

/// An axis of values from the bottom of a frame up to a round one at its top.
class ValueAxis {
 public:
  ValueAxis(double greatest, double step, const Frame& frame)
      : frame_(frame),
        step_(step),
        lines_(std::max(1, static_cast<int>(std::ceil(greatest / step - 1e-9)))) {}

  double at(double value) const {
    return frame_.bottom - value / (lines_ * step_) * (frame_.bottom - frame_.top);
  }
  template <typename Text>
  std::vector<Tick> ticks(Text textOf) const {
    std::vector<Tick> ticks;
    for (int i = 0; i <= lines_; ++i) ticks.push_back({at(i * step_), textOf(i * step_)});
    return ticks;
  }

 private:
  Frame frame_;
  double step_;
  int lines_;
};

std::string numberText(double number) { return groupedDigits(decimalText(number, 0)); }

// log10 of `number`, 0 for 0.
double logarithmOf(const Decimal& number) {
  const std::string digits = number.text();
  return std::log10(std::max(
             1.0, std::strtod((digits.substr(0, 1) + "." + digits.substr(1, 16)).c_str(), nullptr))) +
         static_cast<double>(digits.size() - 1);
}

}  // namespace

PathChart pathChart(std::span<const Decimal> iterates, std::size_t tail, int digits, Scale scale,
                    const Frame& frame) {
  const bool isLinear = scale == Scale::kLinear;
  std::vector<double> values;
  double greatest = 0;
  for (const Decimal& value : iterates) {
    values.push_back(isLinear ? shareOf(value, digits) : logarithmOf(value));
    greatest = std::max(greatest, values.back());
  }
  // Powers of ten are whole.
  const double step = roundAbove(greatest / 5);
  const ValueAxis axis(greatest, isLinear ? step : std::max(1.0, step), frame);

  PathChart chart;
  chart.values = axis.ticks([&](double value) {
    return isLinear ? decimalComma(value, 6) : powerOfTenText(static_cast<int>(std::lround(value)));
  });
  const double last = std::max(1.0, static_cast<double>(values.size()) - 1);
  const auto x = [&](double number) { return frame.left + number / last * (frame.right - frame.left); };
  const double every = std::max(1.0, roundAbove(last / 8));
  const auto steps = static_cast<int>(last / every);
  for (int i = 0; i <= steps; ++i) chart.steps.push_back({x(i * every), numberText(i * every)});
  for (std::size_t i = 0; i < values.size(); ++i) {
    const bool isBeyond = isLinear && iterates[i].digits() > static_cast<std::size_t>(digits);
    chart.path.push_back({{x(static_cast<double>(i)), axis.at(values[i])}, i >= tail, isBeyond});
  }
  return chart;
}

BarChart barChart(std::span<const double> values, std::size_t first, const Frame& frame,
                  std::string (*textOf)(double), double gap) {
  const double greatest = std::ranges::max(values);
  const ValueAxis axis(greatest, roundAbove(greatest / 5), frame);
  BarChart chart;
  chart.values = axis.ticks(textOf);
  const double width = (frame.right - frame.left) / static_cast<double>(values.size());
  const auto every =
      static_cast<std::size_t>(std::max(1.0, roundAbove(static_cast<double>(values.size()) / 10)));
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double left = frame.left + static_cast<double>(i) * width;
    chart.bars.push_back({left + gap * width / 2, left + width - gap * width / 2, axis.at(values[i])});
    const std::size_t number = first + i;
    if (number % every == 0)
      chart.numbers.push_back({left + width / 2, numberText(static_cast<double>(number))});
  }
  return chart;
}

BarChart tailsChart(std::span<const Decimal> counts, int digits, const Frame& frame) {
  std::vector<double> shares;
  for (const Decimal& count : counts) shares.push_back(shareOf(count, digits));
  return barChart(shares, 0, frame, percentText);
}

RingLayout ringLayout(double size, std::size_t order, std::size_t longest, double share, double largest) {
  constexpr double kPitch = 4.5;  // of the points, at least
  const double half = size / 2;
  RingLayout layout{{half, half}, 0, 0, {}, {}};
  if (largest > 0) layout.disc = half * 0.94 * std::sqrt(share / largest);
  if (order == 1) {
    layout.points.push_back(layout.centre);
    return layout;
  }
  const auto count = static_cast<double>(order);
  layout.ring = std::max(5.0, half * 0.86 * count / static_cast<double>(longest));
  const auto at = [&](double angle) {
    return Place{half + layout.ring * std::sin(angle), half - layout.ring * std::cos(angle)};
  };
  if (2 * pi * layout.ring / count >= kPitch) {
    for (std::size_t i = 0; i < order; ++i)
      layout.points.push_back(at(2 * pi * static_cast<double>(i) / count));
  }
  const double middle = pi / count;  // of the first arc
  layout.arrow = {at(middle), middle * 180 / pi};
  return layout;
}

}  // namespace zelvion::pages

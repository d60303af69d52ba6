// Runs one work as the program does it and tells its best time, the number of runs and the peak memory:
//   press WORK ARGUMENT... FILE
// The answer goes to FILE afterwards. bench/figures knows the works.

#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "command/run.h"
#include "engine/cycles/cycle_finder.h"
#include "engine/fixedpoints/complete_search.h"
#include "engine/transform/transformation.h"
#include "measure.h"
#include "quiet_desktop.h"

namespace zelvion::bench {
namespace {

using Arguments = std::vector<std::string>;

// A press of the button `name`; the answer is what stands in the output area.
void press(Measure& measure, const std::string& name, const std::string& k, const std::string& p) {
  Program program(k, p);
  measure.run([&] { program.desktop.clear(); }, [&] { program.form.click(name); });
  measure.answer = program.form.RichTextBox1.Text;
}

void pressEnumerator(Measure& measure, const std::string& name) {
  using Enumerator = void (Velmoire::*)();
  static const std::map<std::string, Enumerator> kEnumerators = {
      {"boucle13", &Velmoire::boucle13},       {"boucle14", &Velmoire::boucle14},
      {"boucle15", &Velmoire::boucle15},       {"boucle16", &Velmoire::boucle16},
      {"boucle13K58", &Velmoire::boucle13K58}, {"boucle9K59", &Velmoire::boucle9K59},
      {"boucle5k60", &Velmoire::boucle5k60}};
  Program program("3", "789");
  measure.run([&] { program.desktop.clear(); }, [&] { (program.form.*kEnumerators.at(name))(); });
  measure.answer = program.form.RichTextBox1.Text;
}

// `count` images of p in a run, as texts, with the powers; or else those after the first image, without.
void images(Measure& measure, const std::string& k, const std::string& p, int count, bool later) {
  std::vector<std::string> texts(static_cast<std::size_t>(count));
  std::optional<Transformation> transformation;
  Silhouette silhouette;
  Decimal image;
  const auto begin = [&] {
    if (later && !transformation) transformation.emplace(std::stoi(k));
    silhouette = silhouetteOf(p);
    if (later) silhouette = transformation->apply(silhouette, image);
  };
  const auto work = [&] {
    if (!later) transformation.emplace(std::stoi(k));
    for (std::string& text : texts) {
      silhouette = transformation->apply(silhouette, image);
      text = image.text();
    }
  };
  measure.run(begin, work);
  for (const std::string& text : texts) measure.answer += text + "\n";
}

void product(Measure& measure, std::size_t digits) {
  const auto number = [&](const std::string& period) {
    std::string text;
    while (text.size() < digits) text += period;
    return text.substr(0, digits);
  };
  const std::string a = number("9876543210123456789"), b = number("31415926535897932384");
  measure.run([] {}, [&] { measure.answer = (Decimal::parse(a) * Decimal::parse(b)).text() + "\n"; });
}

// So many steps of a cycle search, or fewer if an iterate comes back.
void steps(Measure& measure, const std::string& k, const std::string& p, std::int32_t count) {
  std::optional<DigitPower> power;
  std::optional<CycleFinder> finder;
  const auto work = [&] {
    finder.emplace(power.emplace(k), p);
    finder->advance(count);
  };
  measure.run([&] { finder.reset(); }, work);
  measure.answer = finder->current();
}

void complete(Measure& measure, int first, int last) {
  std::vector<Decimal> numbers;
  const auto search = [&] {
    for (int order = first; order <= last; ++order) {
      for (Decimal& number : narcissisticNumbers(order)) numbers.push_back(std::move(number));
    }
  };
  measure.run([&] { numbers.clear(); }, search);
  for (const Decimal& number : numbers) measure.answer += number.text() + "\n";
}

// A call of the command line, on one thread; the answer is its output.
void call(Measure& measure, const Arguments& words, const std::string& input = {}) {
  std::ostringstream out;
  const auto work = [&] {
    std::istringstream in(input);
    out.str({});
    std::ostringstream errors;
    Progress progress;
    command::Environment environment{in, out, errors, false, 1, progress};
    if (command::run(words, environment) != 0) throw std::runtime_error(errors.str());
  };
  measure.run([] {}, work);
  measure.answer = out.str();
}

// `count` lines, each a number.
std::string lines(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += std::to_string(1'000'000 + 7 * i) + "\n";
  return text;
}

void run(Measure& measure, const Arguments& a) {
  const std::string& work = a.at(0);
  if (work == "cycle") return press(measure, "Command4", a.at(1), a.at(2));
  if (work == "iterates") return press(measure, "Command6", a.at(1), a.at(2));
  if (work == "cascade") return press(measure, "Command5", a.at(1), "789");
  if (work == "enumerator") return pressEnumerator(measure, a.at(1));
  if (work == "first") return images(measure, a.at(1), a.at(2), 1, false);
  if (work == "later") return images(measure, a.at(1), a.at(2), std::stoi(a.at(3)), true);
  if (work == "product") return product(measure, std::stoul(a.at(1)));
  if (work == "steps") return steps(measure, a.at(1), a.at(2), std::stoi(a.at(3)));
  if (work == "complete") return complete(measure, std::stoi(a.at(1)), std::stoi(a.at(2)));
  if (work == "lines")
    return call(measure, {"image", "--csv", "-k", a.at(1), "-"}, lines(std::stoi(a.at(2))));
  if (work == "starts") return call(measure, {"cycle", "--csv", "-k", a.at(1), "1.." + a.at(2)});
  if (work == "points") return call(measure, {"points-fixes", "--csv", "-k", a.at(1)});
  if (work == "cycles") return call(measure, {"cycles", "--csv", "-k", a.at(1)});
  if (work == "basins") return call(measure, {"cycles", "--csv", "-k", a.at(1), "--bassins"});
  throw std::invalid_argument("unknown work: " + work);
}

}  // namespace
}  // namespace zelvion::bench

int main(int argc, char** argv) { return zelvion::bench::measureMain(argc, argv, zelvion::bench::run); }

// The same works on strings of digits, as a textbook does sums: column by column. The powers are worked out
// once and kept, iterates are looked up in a hash table. Used like `press`; works that do not end within some
// ten seconds are left off and their part is told.

#include <chrono>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "measure.h"

namespace zelvion::bench {
namespace {

constexpr double kMostSeconds = 8;

// `a` + `b`.
std::string add(const std::string& a, const std::string& b) {
  if (a.size() < b.size()) return add(b, a);
  std::string sum = a;
  int carry = 0;
  std::size_t j = b.size();
  for (std::size_t i = a.size(); i-- > 0;) {
    if (j == 0 && carry == 0) break;
    int column = a[i] - '0' + carry;
    if (j > 0) column += b[--j] - '0';
    carry = column >= 10 ? 1 : 0;
    sum[i] = static_cast<char>('0' + column - 10 * carry);
  }
  return carry == 0 ? sum : "1" + sum;
}

// `number` times `digit`.
std::string multiply(const std::string& number, int digit) {
  std::string product = number;
  int carry = 0;
  for (std::size_t i = number.size(); i-- > 0;) {
    const int column = (number[i] - '0') * digit + carry;
    product[i] = static_cast<char>('0' + column % 10);
    carry = column / 10;
  }
  return carry == 0 ? product : std::to_string(carry) + product;
}

bool isLess(const std::string& a, const std::string& b) {
  return a.size() != b.size() ? a.size() < b.size() : a < b;
}

class Powers {
 public:
  explicit Powers(int k) : powers_(10, "1") {
    for (int digit = 2; digit <= 9; ++digit) {
      for (int i = 0; i < k; ++i) power(digit) = multiply(power(digit), digit);
    }
  }

  std::string image(const std::string& number) const {
    std::string sum = "0";
    for (const char digit : number) {
      if (digit != '0') sum = add(sum, powers_[static_cast<std::size_t>(digit - '0')]);
    }
    return sum;
  }

 private:
  std::string& power(int digit) { return powers_[static_cast<std::size_t>(digit)]; }

  std::vector<std::string> powers_;
};

// Tells when a work has gone on for too long.
class Limit {
 public:
  bool reached() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count() > kMostSeconds;
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

std::string partOf(std::size_t done, std::size_t all) {
  return done == all ? "all" : std::to_string(done) + "/" + std::to_string(all);
}

std::string cycle(const std::string& k, const std::string& p) {
  const Powers powers(std::stoi(k));
  std::unordered_map<std::string, int> seen;
  std::string number = p;
  int step = 0;
  int first = 0;
  do {
    number = powers.image(number);
    first = seen.try_emplace(number, ++step).first->second;
  } while (first == step);

  std::string list = "(" + number;
  std::string largest = number;
  std::string smallest = number;
  for (int i = 1; i < step - first; ++i) {
    number = powers.image(number);
    list += ", " + number;
    if (isLess(largest, number)) largest = number;
    if (isLess(number, smallest)) smallest = number;
  }
  return " Puissance k= " + k + ". Pour " + p + ": Convergence vers le CYCLE d'ORDRE " +
         std::to_string(step - first) + ":\r\n" + list + ")\r\nPoints extrêmes du cycle: " + smallest + ", " +
         largest + " nombre de chiffres maximum: " + std::to_string(largest.size());
}

std::string iterates(const std::string& k, const std::string& p, std::string& part) {
  constexpr std::size_t kIterates = 1000;
  const Limit limit;
  const Powers powers(std::stoi(k));
  std::string number = p;
  std::string list;
  std::size_t done = 0;
  for (; done < kIterates && !limit.reached(); ++done) {
    number = powers.image(number);
    list += " " + number;
  }
  part = partOf(done, kIterates);
  return list;
}

void later(Measure& measure, const std::string& k, const std::string& p, std::size_t count) {
  const Powers powers(std::stoi(k));
  std::string number = powers.image(p);
  std::size_t done = 0;
  const auto work = [&] {
    const Limit limit;
    for (done = 0; done < count && !limit.reached(); ++done) {
      number = powers.image(number);
      measure.answer += number + "\n";
    }
  };
  measure.run(
      [&] {
        measure.answer.clear();
        number = powers.image(p);
      },
      work);
  measure.part = partOf(done, count);
}

// Calls `test` with every text of `digits` non-zero digits that never rise, ascending.
template <typename Test>
void enumerate(std::string& prefix, int digits, char greatest, const Test& test) {
  if (digits == 0) return test(prefix);
  for (char digit = '1'; digit <= greatest; ++digit) {
    prefix.push_back(digit);
    enumerate(prefix, digits - 1, digit, test);
    prefix.pop_back();
  }
}

std::string cascade(const std::string& k) {
  const int order = std::stoi(k);
  const Powers powers(order);
  std::string prefix(order > 12 ? static_cast<std::size_t>(order - 12) : 0, '9');
  std::string list = "Point(s) fixe(s) pour k = " + k + "\r\n";
  const int last = order == 3 ? 3 : order < 11 ? order + 1 : 12;
  for (int digits = 2; digits <= last; ++digits) {
    enumerate(prefix, digits, '9', [&](const std::string& candidate) {
      const std::string image = powers.image(candidate);
      if (image == powers.image(image)) list += image + ", ";
    });
  }
  return list;
}

std::string enumerator(int k, std::size_t nines, int digits) {
  const Powers powers(k);
  std::string prefix(nines, '9');
  std::string outcome;
  enumerate(prefix, digits, '9', [&](const std::string& candidate) {
    const std::string image = powers.image(candidate);
    outcome = image == powers.image(image) ? image + ", " : "rien";
  });
  return outcome;
}

void run(Measure& measure, const std::vector<std::string>& a) {
  const std::string& work = a.at(0);
  if (work == "later") return later(measure, a.at(1), a.at(2), std::stoul(a.at(3)));
  measure.run([] {},
              [&] {
                if (work == "cycle") {
                  measure.answer = cycle(a.at(1), a.at(2));
                } else if (work == "iterates") {
                  measure.answer = iterates(a.at(1), a.at(2), measure.part);
                } else if (work == "cascade") {
                  measure.answer = cascade(a.at(1));
                } else if (work == "enumerator") {
                  measure.answer = enumerator(std::stoi(a.at(2)), std::stoul(a.at(3)), std::stoi(a.at(4)));
                } else {
                  throw std::invalid_argument("unknown work: " + work);
                }
              });
}

}  // namespace
}  // namespace zelvion::bench

int main(int argc, char** argv) { return zelvion::bench::measureMain(argc, argv, zelvion::bench::run); }

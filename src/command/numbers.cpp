#include "command/numbers.h"

#include <algorithm>

#include "engine/arith/order.h"
#include "engine/text/number.h"
#include "engine/text/refusal.h"
#include "engine/text/utf8.h"
#include "pages/typography.h"

namespace zelvion::command {
namespace {

// Whether a line is a number to the letter, as nearly all are.
bool isPlain(std::string_view line) {
  return !line.empty() && line.front() != '0' &&
         std::ranges::all_of(line, [](char c) { return c >= '0' && c <= '9'; });
}

void increment(std::string& digits) {
  std::size_t i = digits.size();
  while (i > 0 && digits[i - 1] == '9') digits[--i] = '0';
  if (i > 0) {
    ++digits[i - 1];
  } else {
    digits.insert(digits.begin(), '1');
  }
}

class Numbers {
 public:
  Numbers(Output& output, Environment& environment, const std::function<void(std::string_view)>& work)
      : output_(output), environment_(environment), work_(work) {}

  int run(const std::vector<std::string>& operands) {
    std::size_t place = 0;
    for (const std::string& operand : operands) {
      ++place;
      if (operand == "-") {
        readLines();
      } else {
        take(operand, "argument ", place);
      }
    }
    return failed_ ? kFailure : kSuccess;
  }

 private:
  static constexpr std::streamsize kPiece = 1 << 16;

  bool stopped() const { return environment_.progress.stop; }

  // Takes the numbers of one operand or line; `kind` and `place` tell which it is.
  void take(std::string_view text, const char* kind, std::size_t place) {
    if (stopped()) return;
    try {
      const std::size_t dots = text.find("..");
      if (dots == std::string_view::npos) {
        takeOne(text::digitsOf(text), kind, place);
        return;
      }
      const std::string_view first = text::digitsOf(text.substr(0, dots));
      const std::string_view last = text::digitsOf(text.substr(dots + 2));
      if (compareDigits(first, last) > 0)
        throw Refusal("L'intervalle « " + text::shortened(text) +
                      " » est à l'envers : le plus petit nombre vient d'abord.");
      for (std::string current(first); !stopped(); increment(current)) {
        takeOne(current, kind, place);
        if (current == last) return;
      }
    } catch (const Refusal& error) {
      tell(error.what(), kind, place);
    }
  }

  void takeOne(std::string_view digits, const char* kind, std::size_t place) {
    try {
      work_(digits);
    } catch (const Refusal& error) {
      tell(error.what(), kind, place);
    }
  }

  void tell(const char* sentence, const char* kind, std::size_t place) {
    output_.flush();
    environment_.err << pages::typeset("velmoire : " + (kind + std::to_string(place)) + " : " + sentence)
                     << std::endl;
    failed_ = true;
  }

  // Reads lines as they come; whatever is available without waiting is read in large pieces.
  void readLines() {
    std::string pending;
    while (!stopped()) {
      output_.flush();
      std::streambuf& in = *environment_.in.rdbuf();
      if (in.sgetc() == std::streambuf::traits_type::eof()) break;
      const std::size_t before = pending.size();
      const auto ready = std::clamp<std::streamsize>(in.in_avail(), 1, kPiece);
      pending.resize(before + static_cast<std::size_t>(ready));
      pending.resize(before + static_cast<std::size_t>(in.sgetn(&pending[before], ready)));
      std::size_t begin = 0;
      for (std::size_t end = pending.find('\n', before); end != std::string::npos && !stopped();
           end = pending.find('\n', begin)) {
        takeLine(std::string_view(pending).substr(begin, end - begin));
        begin = end + 1;
      }
      pending.erase(0, begin);
    }
    if (!pending.empty() && !stopped()) takeLine(pending);
  }

  void takeLine(std::string_view line) {
    ++line_;
    if (isPlain(line)) return takeOne(line, "ligne ", line_);
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (line_ == 1 && line.starts_with(kByteOrderMark)) line.remove_prefix(kByteOrderMark.size());
    const std::size_t begin = line.find_first_not_of(" \t\r");
    if (begin == std::string_view::npos) return;
    line = line.substr(begin, line.find_last_not_of(" \t\r") + 1 - begin);
    take(line, "ligne ", line_);
  }

  Output& output_;
  Environment& environment_;
  const std::function<void(std::string_view)>& work_;
  std::size_t line_ = 0;
  bool failed_ = false;
};

}  // namespace

int forEachNumber(const Arguments& arguments, Output& output, Environment& environment,
                  const std::function<void(std::string_view)>& work) {
  const auto& operands = arguments.operands();
  if (operands.empty() && environment.inIsTerminal)
    throw WrongCall(
        "Il manque un nombre : donnez des nombres, des intervalles comme 1..1000, ou - pour lire "
        "l'entrée standard.");
  Numbers numbers(output, environment, work);
  return numbers.run(operands.empty() ? std::vector<std::string>{"-"} : operands);
}

}  // namespace zelvion::command

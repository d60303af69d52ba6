#pragma once

#include <gmpxx.h>

#include <algorithm>
#include <random>
#include <string>

namespace zelvion::testing {

inline mpz_class valueIn(const std::string& text) { return mpz_class(text.empty() ? "0" : text, 10); }

/// The magnitude with zeros in front up to `width` digits; zero of width 0 is the empty text.
inline std::string padded(const mpz_class& value, std::size_t width) {
  const std::string text = value == 0 ? "" : mpz_class(abs(value)).get_str();
  return std::string(width - std::min(width, text.size()), '0') + text;
}

/// Digits in runs of nines, zeros and random ones, so that carries and borrows travel far.
inline std::string runsOfDigits(std::size_t length, std::mt19937& random) {
  std::string text;
  while (text.size() < length) {
    const auto kind = random() % 4;
    for (auto run = random() % 30 + 1; run > 0 && text.size() < length; --run) {
      text += kind == 0 ? '9' : kind == 1 ? '0' : static_cast<char>('0' + random() % 10);
    }
  }
  return text;
}

}  // namespace zelvion::testing

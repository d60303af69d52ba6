#pragma once

#include <gmpxx.h>

#include <array>
#include <string>

namespace zelvion::testing {

/// The digit-power transformation digit by digit, in another arithmetic than the program's own.
class PlainPower {
 public:
  explicit PlainPower(unsigned k) {
    for (unsigned d = 1; d <= 9; ++d) mpz_ui_pow_ui(powers_[d].get_mpz_t(), d, k);
  }
  const mpz_class& operator[](std::size_t digit) const { return powers_[digit]; }
  std::string image(const std::string& number) const {
    mpz_class sum;
    for (const char c : number) sum += powers_[static_cast<std::size_t>(c - '0')];
    return sum.get_str();
  }

 private:
  std::array<mpz_class, 10> powers_;
};

}  // namespace zelvion::testing

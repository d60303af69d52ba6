// Any bytes as operands of the string arithmetic: each operation gives its laws' result or refuses.

#include <cstdint>
#include <cstdlib>

#include "engine/text/refusal.h"
#include "form/scripted_desktop.h"
#include "form/shell/velmoire.h"

namespace {

void require(bool law) {
  if (!law) std::abort();
}

template <typename Operation>
void attempt(Operation operation) {
  try {
    operation();
  } catch (const zelvion::Refusal&) {
  }
}

bool isCanonical(const std::string& text) {
  const std::string digits = text.starts_with('-') ? text.substr(1) : text;
  return !digits.empty() && digits[0] != '0' && digits.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using zelvion::Velmoire;
  if (size < 5) return 0;
  zelvion::testing::ScriptedDesktop desktop;
  desktop.answerAll([](const auto&) { return zelvion::Answer::Ok; });
  Velmoire form(desktop);
  std::int32_t number = 0;
  for (int i = 0; i < 4; ++i)
    number = static_cast<std::int32_t>(static_cast<std::uint32_t>(number) << 8 | data[i]);
  const std::size_t half = 5 + data[4] * (size - 5) / 255;
  const std::string a(data + 5, data + half);
  const std::string b(data + half, data + size);

  attempt([&] { require(Velmoire::Plusplus(a, b).size() >= b.size()); });
  attempt([&] { require(Velmoire::Maxi(a, b) == a || Velmoire::Maxi(a, b) == b); });
  attempt([&] { require((Velmoire::Mini(a, b) == a) == (Velmoire::Maxi(a, b) == b)); });
  attempt([&] { require(Velmoire::idem(a, b) == Velmoire::idem(b, a)); });
  attempt([&] {
    const std::string sum = Velmoire::PlusCalcul(a, number);
    if (isCanonical(a)) require(form.MoinsCalcul(sum, number) == a);
  });
  attempt([&] { form.MoinsCalcul(b, number); });
  attempt([&] { Velmoire::MoinsCalcul0(a, number); });
  attempt([&] { Velmoire::PuisCalcul(a, number % 3000); });
  attempt([&] { Velmoire::PuisCalcul(a, number); });
  attempt([&] { Velmoire::TiersCalcul(a); });
  attempt([&] { Velmoire::Triple(a); });
  attempt([&] {
    std::string halved = a;
    Velmoire::DemiCalcul(halved);
    require(halved == a || "-" + halved == a);
  });
  attempt([&] {
    const std::string product = Velmoire::MulCalcul(a, number);
    std::int32_t divisor = number;
    std::string quotient;
    if (number != 0 && isCanonical(a))
      require(Velmoire::DiviCalcul(product, divisor, quotient) && quotient == a);
  });
  return 0;
}

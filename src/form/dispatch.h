#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "form/desktop.h"

namespace zelvion {

/// The handler of a press on a control.
template <typename F>
struct Handler {
  std::string_view control;
  void (F::*run)();
};

/// The handler of `name`, or null.
template <typename F, std::size_t N>
const Handler<F>* findHandler(const std::array<Handler<F>, N>& handlers, std::string_view name) {
  const auto found =
      std::find_if(handlers.begin(), handlers.end(), [&](const auto& h) { return h.control == name; });
  return found == handlers.end() ? nullptr : &*found;
}

/// Tells what stopped a handler, in a box with the title that `title` makes: to be called where its exception
/// was caught. It never throws.
void reportFailure(Desktop& desktop, const std::function<std::string()>& title) noexcept;

}  // namespace zelvion

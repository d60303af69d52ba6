#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <string>
#include <string_view>

#include "form/shell/desktop.h"

namespace zelvion {

/// The handler of a button or menu item.
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

/// Reports the exception being handled in a box titled `title()`; call it from a catch block. Never throws.
void reportFailure(Desktop& desktop, const std::function<std::string()>& title) noexcept;

}  // namespace zelvion

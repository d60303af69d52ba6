#pragma once

#include <map>
#include <string>
#include <vector>

#include "engine/plain_power.h"

namespace zelvion::testing {

/// The multisets of `digits` digits from 1 to 9, each from its greatest digit down, ascending.
inline const std::vector<std::string>& candidatesOf(int digits) {
  static std::map<int, std::vector<std::string>> known = {{0, {""}}};
  std::vector<std::string>& candidates = known[digits];
  if (!candidates.empty()) return candidates;
  for (const std::string& shorter : candidatesOf(digits - 1)) {
    for (char d = '1'; d <= (shorter.empty() ? '9' : shorter.back()); ++d) candidates.push_back(shorter + d);
  }
  return candidates;
}

/// The image of a candidate, or nothing if it is not fixed.
inline std::string fixedImage(const PlainPower& plain, const std::string& candidate) {
  const std::string image = plain.image(candidate);
  return plain.image(image) == image ? image : "";
}

}  // namespace zelvion::testing

#include "form/site.h"

namespace zelvion {

std::string addressOf(std::string_view page) {
  return std::string(ZELVION_SITE).append(page);
}

}  // namespace zelvion

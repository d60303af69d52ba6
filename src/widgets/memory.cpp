#include "widgets/memory.h"

#include <fstream>
#include <limits>
#include <new>
#include <string>

namespace zelvion {
namespace {

constexpr std::size_t kToSpare = std::size_t{16} << 20;

/// What the machine could still give without swapping, in bytes; the largest number where it does not say.
std::size_t available() {
  std::ifstream file("/proc/meminfo");
  for (std::string name; file >> name;) {
    std::size_t kilobytes = 0;
    if (name == "MemAvailable:" && file >> kilobytes) return kilobytes << 10;
  }
  return std::numeric_limits<std::size_t>::max();
}

}  // namespace

void requireMemory(std::size_t bytes) {
  const std::size_t wanted = bytes + kToSpare;
  if (wanted > available()) throw std::bad_alloc();
  void* volatile block = ::operator new(wanted);  // volatile: a compiler may leave out what nobody looks at
  ::operator delete(block);
}

}  // namespace zelvion

#include <atomic>
#include <cstdlib>
#include <new>

#include "form/form_test.h"

namespace {

/// How many allocations still succeed; below 0 all of them. Where `lasting`, all fail from then on.
std::atomic<long> left{-1};
std::atomic<bool> lasting{false};

bool mayAllocate() {
  if (left < 0) return true;
  if (left-- > 0) return true;
  if (lasting) left = 0;
  return false;
}

}  // namespace

void* operator new(std::size_t size) {
  void* place = mayAllocate() ? std::malloc(size) : nullptr;
  if (place == nullptr) throw std::bad_alloc();
  return place;
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  const auto unit = static_cast<std::size_t>(alignment);
  void* place = mayAllocate() ? std::aligned_alloc(unit, (size + unit - 1) / unit * unit) : nullptr;
  if (place == nullptr) throw std::bad_alloc();
  return place;
}
void operator delete(void* place) noexcept { std::free(place); }
void operator delete(void* place, std::size_t) noexcept { std::free(place); }
void operator delete(void* place, std::align_val_t) noexcept { std::free(place); }
void operator delete(void* place, std::size_t, std::align_val_t) noexcept { std::free(place); }

namespace zelvion {
namespace {

using Memory = testing::FormTest;

TEST_F(Memory, AnyAllocationOfAPressMayFail) {
  std::vector<std::string> boxes;
  boxes.reserve(1'000);
  bool failing = false;
  desktop_.answerAll([&](const testing::Box& box) {
    if (failing) boxes.push_back(box.prompt);
    return box.buttons == Buttons::Ok ? Answer::Ok : Answer::Yes;
  });
  for (const char* name : {"Listenbre2.txt", "Listenbre3.txt", "Listenbre4.txt", "amstrong.txt"}) {
    desktop_.files[name] = "1\r\n2\r\n";
  }
  int told = 0;
  int tooLarge = 0;
  for (const std::string name :
       {"Command2", "Command3", "Command4", "Command5", "Command6", "Command8", "Command9", "Command10",
        "Command11", "Command12", "Command13", "Command15", "Principe", "mnuInfo"}) {
    const auto press = [&] {
      form_.Form_Load();
      form_.ordrek.Text = "16";
      form_.RichTextBox1.Text = "old";
      form_.click(name);
      return form_.RichTextBox1.Text + form_.entier.Text + form_.ListePfixe;
    };
    const std::string expected = press();
    for (const bool all : {false, true}) {
      bool reached = true;
      for (long n = 0; reached; n += 1 + n / 16) {
        form_.Form_Load();
        boxes.clear();
        failing = true;
        lasting = all;
        left = n;
        form_.click(name);
        reached = left <= 0;
        left = -1;
        failing = false;
        for (const std::string& box : boxes) told += box.starts_with("La mémoire ne suffit pas") ? 1 : 0;
        for (const std::string& box : boxes)
          tooLarge += box.find("il est trop grand pour la mémoire") < box.size();
        desktop_.takeBoxes();
        ASSERT_EQ(press(), expected) << name << " after allocation " << n;
        desktop_.takeBoxes();
      }
    }
  }
  EXPECT_GT(told, 100);
  EXPECT_GT(tooLarge, 10) << "data files";
}

}  // namespace
}  // namespace zelvion

#include <atomic>
#include <cstdlib>
#include <new>

#include "form/form_test.h"

namespace {

/// How many allocations still succeed; below 0 all of them. Where `lasting`, all fail from then on.
std::atomic<long> left{-1};
std::atomic<long> held{0};  ///< allocations that were not given back
std::atomic<bool> lasting{false};

bool mayAllocate() {
  if (left < 0 || left-- > 0) {
    ++held;
    return true;
  }
  if (lasting) left = 0;
  return false;
}

void giveBack(void* place) {
  if (place != nullptr) --held;
  std::free(place);
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
void operator delete(void* place) noexcept { giveBack(place); }
void operator delete(void* place, std::size_t) noexcept { giveBack(place); }
void operator delete(void* place, std::align_val_t) noexcept { giveBack(place); }
void operator delete(void* place, std::size_t, std::align_val_t) noexcept { giveBack(place); }

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
    desktop_.takeBoxes();
    const long before = held;
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
    boxes.clear();
    EXPECT_LE(held, before + 10) << name << " keeps memory";
  }
  EXPECT_GT(told, 100);
  EXPECT_GT(tooLarge, 10) << "data files";
}

}  // namespace
}  // namespace zelvion

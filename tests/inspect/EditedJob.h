#pragma once

#include <random>
#include <string>
#include <vector>

#include "support/Capture.h"

namespace rvf::test {

/// A part as numbers that an edit can change; what they mean depends on the type.
struct Item {
  int type = 1, x = 0, y = 0, width = 4, size = 0;
  std::u16string words{};
  int font = 7, rotation = 0;
  unsigned colour = 0x112233;
  int index = -1;  // in the list before all edits

  [[nodiscard]] Part part() const;
  [[nodiscard]] std::string bytes() const;
};
using Items = std::vector<Item>;

struct Sheet {
  std::u16string name{};
  Items items{};
};
struct Recipient {
  std::u16string id{};
  std::vector<Sheet> sheets{};
};
/// What a composition engine makes of one form for several customers: letters with a letterhead as
/// a shared object, an address, paragraphs, a table with similar rows, and, scattered among these,
/// a part of every type.
struct Job {
  std::vector<Items> objects{};
  std::vector<Recipient> recipients{};

  [[nodiscard]] std::string capture() const;
};

class JobGenerator {
 public:
  explicit JobGenerator(unsigned seed) : random_(seed) {}

  std::mt19937& engine() { return random_; }
  int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  template <class List>
  auto& oneOf(List& list) {
    return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
  }

  Job job();
  Recipient recipient(int number);
  Sheet sheet(int number);
  std::u16string amount();
  std::u16string word();
  std::u16string sentence(int words);

 private:
  void addTable(Items& items, int y);

  std::mt19937 random_;
};

}  // namespace rvf::test

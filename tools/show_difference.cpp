// Prints a difference file for people:  show_difference FILE
//
// Reads the file from its bytes alone, with no code of the program that wrote it.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

/// The file ends inside a field, or a field cannot be what it says.
struct Damage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Reads little-endian fields from the front; throws Damage instead of reading past the end.
class Reader {
 public:
  explicit Reader(std::vector<unsigned char> bytes) : bytes_(std::move(bytes)) {}

  [[nodiscard]] bool atEnd() const { return position_ == bytes_.size(); }

  std::int32_t integer() { return static_cast<std::int32_t>(unsignedOf(4)); }

  /// In UTF-8. Control characters and halves of surrogate pairs are shown by their number.
  std::string text() {
    if (unsignedOf(3) != 0xFFFEFF) {
      throw Damage("a text has no marker");
    }
    std::uint32_t length = unsignedOf(1);
    if (length == 0xFF) {
      length = unsignedOf(2);
      if (length == 0xFFFF) {
        length = unsignedOf(4);
      }
    }
    if (length > (bytes_.size() - position_) / 2) {
      throw Damage("a text is longer than the file");
    }
    std::vector<std::uint32_t> units(length);
    std::generate(units.begin(), units.end(), [this] { return unsignedOf(2); });
    return toUtf8(units);
  }

 private:
  std::uint32_t unsignedOf(std::size_t width) {
    if (bytes_.size() - position_ < width) {
      throw Damage("the file ends inside a field");
    }
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < width; ++i) {
      value |= std::uint32_t{bytes_[position_ + i]} << (8 * i);
    }
    position_ += width;
    return value;
  }

  static std::string toUtf8(const std::vector<std::uint32_t>& units) {
    std::string utf8;
    const auto put = [&utf8](std::uint32_t byte) { utf8 += static_cast<char>(byte); };
    for (std::size_t i = 0; i < units.size(); ++i) {
      std::uint32_t c = units[i];
      if (c >> 10 == 0x36 && i + 1 < units.size() && units[i + 1] >> 10 == 0x37) {
        c = 0x10000 + ((c & 0x3FF) << 10) + (units[++i] & 0x3FF);
      }
      if (c < 0x20 || (c >= 0x7F && c < 0xA0) || c >> 11 == 0x1B) {
        char shown[8];
        std::snprintf(shown, sizeof shown, "\\u%04X", c & 0xFFFF);
        utf8 += shown;
      } else if (c < 0x80) {
        put(c);
      } else if (c < 0x800) {
        put(0xC0 | c >> 6), put(0x80 | (c & 0x3F));
      } else if (c < 0x10000) {
        put(0xE0 | c >> 12), put(0x80 | (c >> 6 & 0x3F)), put(0x80 | (c & 0x3F));
      } else {
        put(0xF0 | c >> 18), put(0x80 | (c >> 12 & 0x3F));
        put(0x80 | (c >> 6 & 0x3F)), put(0x80 | (c & 0x3F));
      }
    }
    return utf8;
  }

  std::vector<unsigned char> bytes_;
  std::size_t position_ = 0;
};

std::string inWords(std::int32_t bits) {
  struct Word {
    std::uint32_t bit;
    const char* text;
  };
  static constexpr Word kWords[] = {
      {2097152, "different resolutions"},
      {1048576, "Customers"},
      {524288, "Page count"},
      {32768, "Shapes"},
      {16384, "Lines"},
      {8192, "Fonts"},
      {4096, "Images"},
      {2048, "Text"},
      {1024, "Border lines"},
      {512, "Angle of rotation"},
      {256, "Color"},
      {128, "Content"},
      {64, "Line Width"},
      {32, "Position"},
      {1, "Draw Order"},
  };
  if (bits == 0) {
    return "identical";
  }
  auto left = static_cast<std::uint32_t>(bits);
  std::string words;
  for (const Word& word : kWords) {
    if ((left & word.bit) != 0) {
      words += std::string(words.empty() ? "" : ", ") + word.text;
      left &= ~word.bit;
    }
  }
  if (left != 0) {
    words += (words.empty() ? "" : ", ") + std::string("unknown bits ") + std::to_string(left);
  }
  return words + " (" + std::to_string(bits) + ")";
}

void showCustomer(Reader& file) {
  const std::int32_t index = file.integer();
  const std::string id = file.text();
  const std::int32_t firstPages = file.integer();
  const std::int32_t secondPages = file.integer();
  std::printf("\nCustomer %d \"%s\": pages %d / %d\n", index, id.c_str(), firstPages, secondPages);
  const std::int32_t compared = std::min(firstPages, secondPages);
  for (std::int32_t page = 0; page < compared; ++page) {
    std::printf("  page %d: %s\n", page, inWords(file.integer()).c_str());
  }
  std::printf("  customer: %s\n", inWords(file.integer()).c_str());
}

void show(Reader& file) {
  if (file.atEnd()) {
    std::puts(
        "The file is empty: no comparison took place (different resolutions, different numbers of\n"
        "customers, or an input that is not valid).");
    return;
  }
  std::printf("First file:  %s\n", file.text().c_str());
  std::printf("Second file: %s\n", file.text().c_str());
  const std::int32_t customers = file.integer();
  std::printf("Customers:   %d\n", customers);
  for (std::int32_t shown = 0; shown < customers; ++shown) {
    if (file.atEnd()) {
      std::printf(
          "\nThe file ends after %d of %d customers, without totals: the ids of the next customer\n"
          "differ, or the run was cut off.\n",
          shown, customers);
      return;
    }
    showCustomer(file);
  }
  if (file.atEnd()) {
    std::puts("\nThe file has no totals: the run was cut off.");
    return;
  }
  const std::int32_t fileBits = file.integer();
  const std::int32_t differingPages = file.integer();
  const std::int32_t pageCountDelta = file.integer();
  std::printf("\nTotal: %s\nDiffering pages: %d\nPages without a partner: %d\n",
              inWords(fileBits).c_str(), differingPages, pageCountDelta);
  if (!file.atEnd()) {
    throw Damage("bytes follow the totals");
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: show_difference FILE\n", stderr);
    return 2;
  }
  try {
    std::ifstream stream(argv[1], std::ios::binary);
    std::vector<unsigned char> bytes(std::istreambuf_iterator<char>(stream), {});
    if (!stream) {
      std::fprintf(stderr, "show_difference: %s cannot be read\n", argv[1]);
      return 1;
    }
    Reader file(std::move(bytes));
    show(file);
  } catch (const std::exception& failure) {
    std::fflush(stdout);
    std::fprintf(stderr, "show_difference: %s: %s\n", argv[1], failure.what());
    return 1;
  }
}

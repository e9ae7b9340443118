// Writes a large pair of page-capture files for measurements.
//   make_large_pair MEBIBYTES PAGE_KIBIBYTES CONTENT CHANGE FIRST SECOND
// CONTENT is what the pages hold. paragraphs: mostly text with several runs, lines and rectangles,
// a referenced logo, an occasional image. phrases: only short texts of one run, 85 bytes each.
// CHANGE says how the second file differs: none, thousandth (one page in a thousand has a different
// text), all (every page has), inserted (every page has an additional part at its start). With
// pages of 0 KiB, the files consist only of an index: MEBIBYTES million pages without a body.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "support/Capture.h"

namespace {

using namespace rvf::test;

constexpr int kResolution = 300, kPagesOfACustomer = 8;

std::u16string digitsOf(int value) {
  const std::string digits = std::to_string(value);
  return {digits.begin(), digits.end()};
}

Part paragraph(int number, bool isChanged) {
  TextFields f{.text = u"", .runs = {}, .fontId = 1 + number % 5, .rotation = 0};
  for (int run = 0; run < 4; ++run) {
    std::u16string words = u"The sum insured of item " + digitsOf(number * 7 + run);
    words += isChanged && run == 2 ? u" was changed." : u" stays as it is.";
    const int y = 300 + 50 * (4 * (number % 16) + run);
    f.runs.push_back({.x = 250, .y = y, .charCount = static_cast<int>(words.size())});
    f.text += words;
  }
  return text(f);
}

Part phrase(int number, bool isChanged) {
  std::u16string words = (isChanged ? u"altered " : u"item no. ") + digitsOf(number);
  words.resize(20, u'.');
  return text({.text = words,
               .runs = {{.x = 250 + number % 5, .y = number % 3300, .charCount = 20}},
               .fontId = 1 + number % 5,
               .rotation = 0});
}

std::vector<Part> phrasePage(int page, int size, bool isChanged) {
  constexpr int kPhraseSize = 85;
  std::vector<Part> parts;
  for (int i = 0; i < size / kPhraseSize; ++i) {
    parts.push_back(phrase(page * 31 + i, isChanged && i == 1));
  }
  return parts;
}

/// Parts of about `size` bytes. The change is in the second paragraph.
std::vector<Part> paragraphPage(int page, int size, bool isChanged) {
  std::vector<Part> parts = {staticRef({.x = 1900, .y = 120})};
  if (page % 16 == 0) {
    parts.push_back(image({.bytes = std::string(1024, static_cast<char>(page))}));
  }
  ByteWriter measure(true);
  for (const Part& part : parts) {
    writePart(measure, part);
  }
  for (int i = 0; static_cast<int>(measure.size()) < size; ++i) {
    const std::size_t before = parts.size();
    parts.push_back(paragraph(page * 31 + i, isChanged && i == 1));
    parts.push_back(line({.points = {{250, 280 + i}, {2230, 280 + i}}}));
    if (i % 4 == 0) {
      parts.push_back(rect({.area = {250, 260 + i, 2230, 900 + i}}));
    }
    for (std::size_t p = before; p < parts.size(); ++p) {
      writePart(measure, parts[p]);
    }
  }
  return parts;
}

/// A file that is written page by page and then gets its index.
class LargeCapture {
 public:
  explicit LargeCapture(const char* path) : out_(path, std::ios::binary) {
    ByteWriter head(true);
    head.i32(0, kWideMagic, 3, kResolution);
    const StaticFields logo{.first = {.parts = {poly(), paragraph(1, false)}}};
    head.i32(1);
    writeStatic(head, logo);
    head.i32(0, 0, 0);
    append(head);
  }

  void addEmptyPages(int count) { positions_.assign(static_cast<std::size_t>(count), -1); }

  void addPage(const std::vector<Part>& parts) {
    positions_.push_back(static_cast<int>(written_));
    ByteWriter body(true);
    writePageBody(body, {.list = {.parts = parts}});
    append(body);
  }

  [[nodiscard]] long long written() const { return written_; }

  void finish() {
    ByteWriter index(true);
    const int indexPosition = static_cast<int>(written_);
    const int pages = static_cast<int>(positions_.size());
    index.string(u"");
    index.f64(0).i32(2).f64(0).i32(2);
    index.i32((pages + kPagesOfACustomer - 1) / kPagesOfACustomer);
    for (int start = 0; start < pages; start += kPagesOfACustomer) {
      const int end = std::min(start + kPagesOfACustomer, pages);
      CustomerFields customer{.id = u"C" + digitsOf(start), .pages = {}};
      for (int p = start; p < end; ++p) {
        customer.pages.push_back({.name = u"P" + digitsOf(p)});
      }
      writeCustomer(index, customer, {positions_.begin() + start, positions_.begin() + end});
      append(index);
      index.bytes.clear();
    }
    append(index);
    ByteWriter head(true);
    head.i32(indexPosition);
    out_.seekp(0);
    out_.write(head.bytes.data(), static_cast<std::streamsize>(head.size()));
    if (!out_.flush()) {
      throw std::runtime_error("cannot write");
    }
  }

 private:
  void append(const ByteWriter& bytes) {
    out_.write(bytes.bytes.data(), static_cast<std::streamsize>(bytes.size()));
    written_ += static_cast<long long>(bytes.size());
  }

  std::ofstream out_;
  std::vector<int> positions_;
  long long written_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 7) {
    std::fprintf(stderr,
                 "usage: make_large_pair MEBIBYTES PAGE_KIBIBYTES CONTENT CHANGE FIRST SECOND\n");
    return EXIT_FAILURE;
  }
  const long long size = std::atoll(argv[1]) << 20;
  const int pageSize = std::atoi(argv[2]) << 10;
  const auto pageParts = argv[3] == std::string_view("phrases") ? phrasePage : paragraphPage;
  const std::string_view change = argv[4];
  LargeCapture first(argv[5]);
  LargeCapture second(argv[6]);
  if (pageSize == 0) {
    constexpr int kMillion = 1000000;
    first.addEmptyPages(std::atoi(argv[1]) * kMillion);
    second.addEmptyPages(std::atoi(argv[1]) * kMillion);
  }
  for (int page = 0; pageSize > 0 && first.written() + pageSize < size; ++page) {
    const bool isChanged = change == "all" || (change == "thousandth" && page % 1000 == 999);
    first.addPage(pageParts(page, pageSize, false));
    std::vector<Part> parts = pageParts(page, pageSize, isChanged);
    if (change == "inserted") {
      parts.insert(parts.begin(), justOneLine());
    }
    second.addPage(parts);
  }
  first.finish();
  second.finish();
  return EXIT_SUCCESS;
}

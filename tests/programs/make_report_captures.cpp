// Writes the pairs of files for the browser tests of the report, as NAME-first.rvf and
// NAME-second.rvf:
//   make_report_captures FOLDER
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "support/Capture.h"

namespace {

using namespace rvf::test;

const std::string* folder = nullptr;

void write(const std::string& name, const CaptureFields& first, const CaptureFields& second) {
  for (const auto& [side, file] : {std::pair("-first", &first), std::pair("-second", &second)}) {
    std::ofstream out(*folder + "/" + name + side + ".rvf", std::ios::binary);
    if (!(out << writeCapture(*file).bytes).flush()) {
      std::fprintf(stderr, "make_report_captures: %s cannot be written\n", name.c_str());
      std::exit(1);
    }
  }
}

Part words(int x, int y, const std::u16string& text_) {
  const int count = static_cast<int>(text_.size());
  return text({.text = text_, .runs = {{.x = x, .y = y, .charCount = count}}, .rotation = 0});
}

CaptureFields wide(std::vector<PageFields> pages, const std::u16string& id) {
  CaptureFields file = captureOf(std::move(pages));
  file.magic = kWideMagic;
  file.customers[0].id = id;
  return file;
}

// Texts that try to be markup or code.
CaptureFields hostile(const std::u16string& end) {
  std::u16string odd = u"\u2028\u2029\u202Eabc\u2066 ";
  odd += {char16_t{0xD800}, u' ', char16_t{0xDC00}, u'\u0001'};
  const std::vector<std::u16string> texts = {u"</script><script>window.harmed = 1</script>",
                                             u"<img src=x onerror='window.harmed = 1'>",
                                             u"\"'`${window.harmed = 1}\\",
                                             odd,
                                             u"javascript:window.harmed=1",
                                             u"<!--<script>",
                                             std::u16string(30000, u'w')};
  std::vector<Part> parts;
  int y = 100;
  for (const std::u16string& each : texts) {
    parts.push_back(words(100, y += 100, each + end));
  }
  PageFields sheet = page(std::move(parts));
  sheet.name = u"</title><script>window.harmed = 1</script>";
  CaptureFields file = wide({sheet}, u"</script><script>window.harmed = 1</script>\u202Ex");
  file.label = u"<b onclick=alert(1)>\u2028" + std::u16string(1000000, u'w') + end;
  return file;
}

// Each page has a hundred texts, each at a different place.
CaptureFields manyGroups(const std::u16string& end) {
  std::vector<PageFields> pages;
  for (int p = 0; p < 100; ++p) {
    std::vector<Part> parts;
    for (int i = 0; i < 100; ++i) {
      parts.push_back(words(100 + i % 10 * 200, 100 + i / 10 * 100, u"Text" + end));
    }
    pages.push_back(page(std::move(parts)));
  }
  return wide(std::move(pages), u"C1");
}

CaptureFields manyParts(const std::u16string& end) {
  std::vector<Part> parts;
  for (int i = 0; i < 50000; ++i) {
    parts.push_back(words(i % 250 * 9, i / 250 * 16, i == 7 ? u"Some" + end : u"Part"));
  }
  return wide({page(std::move(parts))}, u"C1");
}

// A letterhead that all pages refer to.
CaptureFields letterhead(const std::u16string& end) {
  CaptureFields file;
  StaticFields head;
  head.first.parts = {words(0, 0, u"Example Insurance" + end)};
  file.statics21 = {head};
  file.customers.clear();
  for (const char16_t* id : {u"C1", u"C2", u"C3"}) {
    file.customers.push_back({.id = id,
                              .pages = {page({staticRef({.staticIndex = 0, .x = 300, .y = 200}),
                                              words(100, 500, u"Body")})}});
  }
  return file;
}

}  // namespace

int main(int, char** argv) {
  const std::string path = argv[1];
  folder = &path;
  write("hostile", hostile(u""), hostile(u" new"));
  write("groups", manyGroups(u""), manyGroups(u" new"));
  write("parts", manyParts(u""), manyParts(u" new"));
  write("letterhead", letterhead(u""), letterhead(u" plc"));
}

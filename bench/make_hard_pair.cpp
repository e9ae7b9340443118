// Writes pairs of page-capture files that are hard to match: COUNT parts (or pages), all of which a
// plain search would compare with one another.
//   make_hard_pair CASE COUNT FIRST SECOND
// Most cases put the parts on one page, in reverse order in the second file. Some need tolerances:
// cases named "near-" a position tolerance of 5, those named "width-" a width tolerance of 5.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/Capture.h"

namespace {

using namespace rvf::test;

using Files = std::pair<CaptureFields, CaptureFields>;

template <class T>
std::vector<T> copies(int count, const T& value) {
  return std::vector<T>(static_cast<std::size_t>(count), value);
}

std::u16string numbered(int n) {
  const std::string digits = std::to_string(n);
  return {digits.begin(), digits.end()};
}

/// `makePart` receives the number of each part.
Files reversed(int count, const std::function<Part(int)>& makePart) {
  std::vector<Part> parts;
  for (int i = 0; i < count; ++i) parts.push_back(makePart(i));
  Files files{captureOf({page(parts)}), {}};
  files.second = captureOf({page({parts.rbegin(), parts.rend()})});
  return files;
}

/// References to one object, which has these children in each file.
Files references(int count, const std::vector<Part>& first, const std::vector<Part>& second) {
  const CaptureFields fields = captureOf({page(copies(count, staticRef()))});
  Files files{fields, fields};
  files.first.statics21 = {{.first = {.parts = first}}};
  files.second.statics21 = {{.first = {.parts = second}}};
  return files;
}

Files sharedObject(int count, const Part& lastInSecond) {
  const std::vector<Part> children = copies<Part>(count, line());
  std::vector<Part> changed = children;
  changed.back() = lastInSecond;
  return references(count, children, changed);
}

Files letterhead(int pages, int parts) {
  CaptureFields fields = captureOf(copies(pages, page({staticRef(), text()})));
  fields.statics21 = {{.first = {.parts = copies(parts, line())}}};
  return {fields, fields};
}

/// Positions on both sides of a border, so that each is close to all the others in one value.
Part nearText(int i) {
  const int half = i % 2 * 6;
  return text({.runs = {{.x = half, .y = i / 2 * 6}, {.x = 6 - half, .y = i / 4 * 6}}});
}

const std::map<std::string, std::function<Files(int)>> kCases = {
    {"references-equal", [](int n) { return sharedObject(n, line()); }},
    {"references-last", [](int n) { return sharedObject(n, rect()); }},
    {"references-one-side", [](int n) { return references(n, copies(n, line()), {}); }},
    {"references-layers",
     [](int n) {
       return reversed(
           n, [](int i) { return staticRef({.refC = i % 60000, .layerByteA = 1 + i / 60000}); });
     }},
    {"near-linesets",
     [](int n) { return reversed(n, [](int i) {
                   return lineSet({.offsets = {i * 6, 40}});
                 }); }},
    {"near-texts",
     [](int n) { return reversed(n, [](int i) {
                   return text({.runs = {{}, {.x = i * 6}}});
                 }); }},
    {"near-crossing", [](int n) { return reversed(n, nearText); }},
    {"near-polys",
     [](int n) {
       return reversed(n, [](int i) { return poly({.points = {{1, 1}, {2, i * 6}, {3, i % 7}}}); });
     }},
    {"width-lines",
     [](int n) { return reversed(n, [](int i) { return line({.width = i * 6}); }); }},
    {"images-link",
     [](int n) { return reversed(n, [](int) { return image({.link = LinkFields()}); }); }},
    {"images-values",
     [](int n) { return reversed(n, [](int) { return image({.nameValues = {{}}}); }); }},
    {"images-info", [](int n) { return reversed(n, [](int i) { return image({.valueA = i}); }); }},
    {"signatures",
     [](int n) {
       return reversed(
           n, [](int i) { return signatureField({.fieldName = "n" + std::to_string(i)}); });
     }},
    {"properties",
     [](int n) {
       return reversed(n, [](int i) {
         return textProp({.texts = {numbered(100000 + i) + u"1234567", u"", u"", u""}});
       });
     }},
    {"letterhead", [](int n) { return letterhead(n, 5000); }},
    {"letterhead-none", [](int n) { return letterhead(n, 0); }},
};

bool write(const char* path, const CaptureFields& fields) {
  const std::string bytes = writeCapture(fields).bytes;
  std::ofstream out(path, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return out.flush().good();
}

}  // namespace

int main(int argc, char** argv) {
  const auto found = argc == 5 ? kCases.find(argv[1]) : kCases.end();
  if (found == kCases.end()) {
    std::fprintf(stderr, "usage: make_hard_pair CASE COUNT FIRST SECOND\ncases:");
    for (const auto& [name, make] : kCases) std::fprintf(stderr, " %s", name.c_str());
    std::fprintf(stderr, "\n");
    return EXIT_FAILURE;
  }
  const Files files = found->second(std::atoi(argv[2]));
  const bool isWritten = write(argv[3], files.first) && write(argv[4], files.second);
  return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}

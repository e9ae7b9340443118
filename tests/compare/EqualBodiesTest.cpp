#include "compare/EqualBodies.h"

#include <optional>

#include "compare/CompareFixture.h"

namespace rvf::test {
namespace {

// Walks with and without the short cut must have the same results.

std::optional<Walk> walk(const std::string& a, const std::string& b, bool dbcs, i32 tolerance,
                         bool usesShortCut) {
  LoadedCapture first(a, dbcs), second(b, dbcs);
  if (!first.reader.valid() || !second.reader.valid()) return {};
  return Walk(first.reader, second.reader, true, usesShortCut, nullptr, {tolerance, tolerance});
}

void expectSameEitherWay(const std::string& a, const std::string& b, const std::string& what) {
  for (const bool dbcs : {false, true}) {
    for (const i32 tolerance : {0, 2, -1}) {
      EXPECT_EQ(walk(a, b, dbcs, tolerance, true), walk(a, b, dbcs, tolerance, false)) << what;
    }
  }
}

TEST(EqualBodies, ShortCutChangesNothingForTheReferencePairs) {
  for (const auto& [name, files] : referenceFiles()) {
    for (const std::string& a : files) {
      for (const std::string& b : files) expectSameEitherWay(a, b, name);
    }
  }
}

TEST(EqualBodies, ShortCutHandlesWhatEqualBytesDoNotShow) {
  std::vector<std::string> files;
  for (const Part& part : allParts()) files.push_back(onePage({part, text()}, 125));
  // Pages that may refer to one object; the window cuts off those with the large image.
  const auto add = [&files](int magic, const Part& shared, const Part& part, std::size_t pages) {
    CaptureFields fields = captureOf(std::vector(pages, page({part, text()})));
    fields.magic = magic;
    fields.statics21 = {{.first = {.parts = {shared}}}};
    files.push_back(writeCapture(fields).bytes);
  };
  add(kWideMagic, line(), staticRef(), 3);
  add(kWideMagic, rect(), staticRef(), 3);
  CaptureFields withoutObject = captureOf(std::vector(3, page({staticRef(), text()})));
  withoutObject.magic = kWideMagic;
  files.push_back(writeCapture(withoutObject).bytes);
  add(kWideMagic, startEnd(), staticRef(), 2);
  add(kNarrowMagic, line(), staticRef(), 3);
  add(kWideMagic, line(), image({.link = LinkFields()}), 2);
  add(kWideMagic, line(), image({.bytes = std::string(100000, 'x')}), 12);
  for (std::size_t i = 0; i < files.size(); ++i) {
    std::string damaged = files[i], narrow = files[i];  // the same bytes, but read as narrow text
    damaged.replace(damaged.size() / 2, 40, std::string(40, '\xEE'));
    narrow.replace(4, 4, ByteWriter().i32(kNarrowMagic).bytes);
    for (const std::string& other : {files[i], files[i == 0 ? 0 : i - 1], damaged, narrow}) {
      expectSameEitherWay(files[i], other, std::to_string(i));
    }
    expectSameEitherWay(damaged, damaged, std::to_string(i));
  }
}

}  // namespace
}  // namespace rvf::test

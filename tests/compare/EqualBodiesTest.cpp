#include "compare/EqualBodies.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "compare/CustomerWalk.h"
#include "compare/Tolerances.h"
#include "messages/MessageReporter.h"
#include "messages/ProcessEnd.h"
#include "storage/MemFile.h"
#include "support/Capture.h"
#include "text/NativeText.h"

namespace rvf {
namespace {

struct ProcessEnded {};

/// All that a walk over two files leaves.
struct Outcome {
  i64 status = 0;
  std::string differences;
  std::string messages;

  bool operator==(const Outcome&) const = default;
};

/// Loads and compares two files in this process, with the short cut or without.
Outcome walk(std::string a, std::string b, bool dbcsMode, bool usesShortCut) {
  constexpr i64 kInvalid = -1, kEnded = -2;
  messageReporter = MessageReporter();
  const ProcessEndHandler before = setProcessEndHandler([] { throw ProcessEnded(); });
  eMemFile firstFile(reinterpret_cast<std::byte*>(a.data()), static_cast<i32>(a.size()), 0);
  eMemFile secondFile(reinterpret_cast<std::byte*>(b.data()), static_cast<i32>(b.size()), 0);
  eMemFile differenceFile(4096);
  Outcome outcome;
  outcome.status = kInvalid;
  try {
    CompareContext firstContext;
    CompareContext secondContext;
    RvfReader first(firstContext, dbcsMode);
    RvfReader second(secondContext, dbcsMode);
    first.load(firstFile);
    second.load(secondFile);
    if (first.valid() && second.valid()) {
      const WalkOutput output{differenceFile, u"a", u"b", nullptr, usesShortCut};
      outcome.status = walkCustomers(first, second, true, output);
    }
  } catch (const ProcessEnded&) {
    outcome.status = kEnded;
  }
  setProcessEndHandler(before);
  outcome.differences.assign(reinterpret_cast<const char*>(differenceFile.data()),
                             static_cast<std::size_t>(differenceFile.Tell()));
  for (const MessageEntry& entry : messageReporter.pending()) {
    outcome.messages += std::to_string(static_cast<i32>(entry.number)) + " " +
                        toNative(entry.arguments[0].view()) + "\n";
  }
  messageReporter = MessageReporter();
  return outcome;
}

void expectSameEitherWay(const std::string& a, const std::string& b, const std::string& what) {
  for (const bool dbcsMode : {false, true}) {
    for (const i32 tolerance : {0, 2, -1}) {
      positionTolerance = tolerance;
      lineTolerance = tolerance;
      EXPECT_EQ(walk(a, b, dbcsMode, true), walk(a, b, dbcsMode, false)) << what;
    }
  }
  positionTolerance = 0;
  lineTolerance = 0;
}

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(EqualBodies, ShortCutChangesNothingForTheReferencePairs) {
  for (const auto& folder : std::filesystem::directory_iterator(RVF_REFERENCE_DIR)) {
    std::vector<std::string> files;
    if (folder.is_directory()) {
      for (const auto& file : std::filesystem::directory_iterator(folder)) {
        if (file.path().extension() == ".rvf") {
          files.push_back(contentOf(file.path()));
        }
      }
    }
    for (const std::string& a : files) {
      for (const std::string& b : files) {
        expectSameEitherWay(a, b, folder.path().string());
      }
    }
  }
}

TEST(EqualBodies, ShortCutChangesNothingForAnyTypeOfPart) {
  for (const test::Part& part : test::allParts()) {
    for (const int version : {105, 125, 157}) {
      const std::string page = test::onePage({part, test::text(), part}, version);
      expectSameEitherWay(page, page, "type " + std::to_string(part.type));
    }
  }
}

/// A file whose pages all refer to one static object.
std::string capture(int magic, const test::Part& shared, const std::vector<test::Part>& parts,
                    int pages) {
  test::CaptureFields fields = test::captureOf({});
  for (int i = 0; i < pages; ++i) {
    fields.customers[0].pages.push_back(test::page(parts));
  }
  fields.magic = magic;
  fields.statics21 = {{.first = {.parts = {shared}}}};
  return test::writeCapture(fields).bytes;
}

TEST(EqualBodies, ShortCutKnowsWhatEqualBytesDoNotTell) {
  using namespace test;
  const std::vector<Part> reference = {staticRef(), text()};
  const std::vector<Part> large = {image({.bytes = std::string(100000, 'x')}), text()};
  const std::vector<Part> link = {image({.link = LinkFields()})};
  struct Case {
    const char* what;
    std::string a, b;
  };
  const Case cases[] = {
      {"references to equal objects", capture(kWideMagic, line(), reference, 3),
       capture(kWideMagic, line(), reference, 3)},
      {"references to unequal objects", capture(kWideMagic, line(), reference, 3),
       capture(kWideMagic, rect(), reference, 3)},
      {"objects that equal nothing", capture(kWideMagic, startEnd(), reference, 2),
       capture(kWideMagic, startEnd(), reference, 2)},
      {"another form of text", capture(kWideMagic, line(), {rect()}, 2),
       capture(kNarrowMagic, line(), {rect()}, 2)},
      {"images with links", capture(kWideMagic, line(), link, 2),
       capture(kWideMagic, line(), link, 2)},
      {"bodies that the window cuts", capture(kWideMagic, line(), large, 12),
       capture(kWideMagic, line(), large, 12)},
  };
  for (const Case& c : cases) {
    expectSameEitherWay(c.a, c.b, c.what);
    for (const std::size_t end : {c.a.size() / 3, c.a.size() / 2}) {
      std::string damaged = c.a;
      damaged.replace(end, 40, std::string(40, '\xEE'));
      expectSameEitherWay(damaged, damaged, c.what);
      expectSameEitherWay(c.a, damaged, c.what);
    }
  }
}

}  // namespace
}  // namespace rvf
